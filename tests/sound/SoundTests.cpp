#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/Failure.h"
#include "sound/Sound.h"
#include "tune/Tune.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Keeps the calls it gets, and fails in one of them if told to.
class RecordingLibrary : public SoundLibrary {
 public:
  std::vector<std::string> Calls;
  std::string Refuses;

  void Init(int mixRate, int channels) override { Note("Init ", mixRate, " ", channels); }
  Song LoadSong(std::string_view path) override {
    Note("LoadSong ", path);
    return ++loaded_;
  }
  void PlaySong(Song song) override { Note("PlaySong ", song); }
  void StopSong(Song song) override { Note("StopSong ", song); }
  void Close() override { Note("Close"); }
  void PlayWave(std::string_view wave) override {
    Note("PlayWave ", wave == Tune::Click() ? "click" : "other");
  }

 private:
  template <typename... Parts>
  void Note(const Parts&... parts) {
    Calls.push_back(Concat(parts...));
    if (!Refuses.empty() && Calls.back().starts_with(Refuses)) Fail("refused");
  }

  Song loaded_ = 0;
};

class SoundCalls : public testing::Test {
 protected:
  RecordingLibrary Library;
  bool Ticked = true;
  bool Shown = true;
  Sound Sounds{Library, "C:\\Kelvo\\", {[this] { return Ticked; }, [this] { return Shown; }}};
};

TEST_F(SoundCalls, EachStartLoadsTheTuneAnew) {
  Sounds.StopMOD();
  EXPECT_THAT(Library.Calls, ElementsAre("StopSong 0", "Close"));
  Library.Calls.clear();
  Sounds.PlayMOD();
  Sounds.StopMOD();
  Sounds.PlayMOD();
  EXPECT_THAT(Library.Calls, ElementsAre("Init 44100 32", "LoadSong C:\\Kelvo\\music.mod",
                                         "PlaySong 1", "StopSong 1", "Close", "Init 44100 32",
                                         "LoadSong C:\\Kelvo\\music.mod", "PlaySong 2"));
}

TEST_F(SoundCalls, AFailureEndsTheProcedureAndNothingMore) {
  struct Case {
    std::string refused;
    std::size_t callsOfPlay, callsOfStop;
  };
  for (const Case& c : std::vector<Case>{{"Init", 1, 2},
                                         {"LoadSong", 2, 2},
                                         {"PlaySong", 3, 2},
                                         {"StopSong", 3, 1},
                                         {"Close", 3, 2}}) {
    Library.Refuses = c.refused;
    Library.Calls.clear();
    Sounds.PlayMOD();
    EXPECT_EQ(Library.Calls.size(), c.callsOfPlay) << c.refused;
    Library.Calls.clear();
    Sounds.StopMOD();
    EXPECT_EQ(Library.Calls.size(), c.callsOfStop) << c.refused;
  }
  Library.Refuses = "PlayWave";
  Sounds.PlayResWave("CLICK");
}

TEST_F(SoundCalls, AClickIsPlayedWhileTheBoxIsTickedAndTheWindowShown) {
  for (const bool ticked : {false, true})
    for (const bool shown : {false, true}) {
      Ticked = ticked;
      Shown = shown;
      Library.Calls.clear();
      std::string name = "Click";
      Sounds.PlayResWave(name);
      if (ticked && shown) {
        EXPECT_THAT(Library.Calls, ElementsAre("PlayWave click"));
        EXPECT_EQ(name, "CLICK");
      } else {
        EXPECT_THAT(Library.Calls, IsEmpty());
        EXPECT_EQ(name, "Click");
      }
    }
  Library.Calls.clear();
  Sounds.PlayResWave("CLACK");
  EXPECT_THAT(Library.Calls, IsEmpty());
}

}  // namespace
