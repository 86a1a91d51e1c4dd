#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/PackFile.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

using namespace std::string_literals;
using RawArchive::Entry;
using RawArchive::Filled;
using RawArchive::Header;
using RawArchive::Noise;
using RawArchive::Number;
using RawArchive::Numbered;
using RawArchive::Record;

namespace {

class ImgEditing : public testing::Test {
 protected:
  void Load(const std::string& bytes) {
    folder.Write("a.img", bytes);
    ASSERT_TRUE(tool.Load(folder.Dos("a.img")));
  }
  [[nodiscard]] std::string Bytes() const { return folder.Read("a.img"); }

  void Add(const std::string& name, const std::string& data) {
    folder.Write("in/" + name, data);
    tool.AddFile(folder.Dos("in\\" + name));
  }

  /// The archive's entries as a fresh object reads them.
  void ExpectOnDisk(const std::vector<Entry>& expected) {
    const std::vector<StoredEntry> found = EntriesOf(folder, "a.img");
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      EXPECT_EQ(found[i].first, expected[i].name);
      EXPECT_TRUE(found[i].second == Filled(expected[i].data)) << found[i].first;
    }
  }

  /// That the object knows of the file what a fresh one reads from it.
  void ExpectMembersAreRight() {
    clsIMGtool fresh(files);
    EXPECT_TRUE(fresh.Load(folder.Dos("a.img")));
    EXPECT_EQ(tool.EntryCount(), fresh.EntryCount());
    EXPECT_EQ(tool.NextEntryPos(), fresh.NextEntryPos());
    EXPECT_EQ(tool.LowestOffset(), fresh.LowestOffset());
    EXPECT_EQ(tool.LowestEntryPos(), fresh.LowestEntryPos());
  }

  TempFolder folder;
  FileSystem files;
  clsIMGtool tool{files};
};

TEST_F(ImgEditing, AddFileWritesOneRecordTheCountAndWholeSectors) {
  const std::vector<std::pair<std::size_t, int>> cases = {{0, 0}, {1, 1}, {2048, 1}, {2049, 2}};
  for (const auto& [length, sectors] : cases) {
    std::string old = RawArchive::Make(Numbered(62));
    // What stood in the slot stays there behind the name's NUL.
    const std::string leftovers = Noise(32, 9);
    old.replace(8 + 62 * 32, 32, leftovers);
    Load(old);
    const std::string data = Noise(length, 8);
    Add("New.dff", data);

    std::string expected = old;
    expected.replace(4, 4, Number(63));
    expected.replace(8 + 62 * 32, 16, Number(63) + Number(sectors) + "New.dff\0"s);
    expected += Filled(data);
    EXPECT_TRUE(Bytes() == expected) << length;
    ExpectMembersAreRight();
    EXPECT_FALSE(tool.ExistsInIMG("New.dff"));  // as of the last Load
  }
}

TEST_F(ImgEditing, AddFileMovesTheLowestEntryWhenTheDirectoryIsFull) {
  const std::string old = RawArchive::Make(Numbered(63));
  Load(old);
  Add("new", "content");
  std::string expected = old;
  expected.replace(4, 4, Number(64));
  expected.replace(8, 4, Number(64));  // e1 has moved to the end
  expected.resize(9 + 63 * 32 - 1);
  expected += Number(65) + Number(1) + "new\0"s;
  // The record reaches into the dead sector, which keeps its bytes otherwise.
  expected += old.substr(expected.size()) + Numbered(1)[0].data + Filled("content");
  EXPECT_TRUE(Bytes() == expected);
  EXPECT_TRUE(tool.ExistsInIMG("new"));
  ExpectMembersAreRight();

  Add("new", "a second one of the name");  // now there is room for 63 more
  std::vector<Entry> entries = Numbered(63);
  entries.insert(entries.end(), {{"new", "content"}, {"new", "a second one of the name"}});
  ExpectOnDisk(entries);
}

TEST_F(ImgEditing, AddFileNeverOverwritesDataWhenOneMoveFreesNoRoom) {
  std::vector<Entry> entries = Numbered(63);
  const std::string data = Noise(std::size_t{3} * 2048, 10);

  // The lowest entry is empty; several share the lowest offset; some of them are empty.
  std::vector<std::pair<int, int>> places(63, {2, 1});
  places[5] = {1, 0};
  places[9] = {1, 1};
  places[20] = {1, 3};
  places[62] = {1, 0};
  std::string head = Header(63);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto& [sector, count] = places[i];
    head += Record(sector, count, entries[i].name);
    entries[i].data = data.substr(static_cast<std::size_t>(sector - 1) * 2048,
                                  static_cast<std::size_t>(count) * 2048);
  }
  Load(Filled(head) + data);
  for (const char* name : {"new1", "new2"}) {
    Add(name, name);
    entries.push_back({name, name});
    ExpectOnDisk(entries);
  }
}

TEST_F(ImgEditing, AddFileTakesTheBareNameOfAtMost23Bytes) {
  const std::string old = RawArchive::Make(Numbered(2));
  Load(old);
  const std::string name24 = "12345678901234567890.dff";
  folder.Write("in/" + name24, "data");
  EXPECT_THROW(tool.AddFile(folder.Dos("in\\" + name24)), Failure);
  EXPECT_EQ(folder.List("in"), std::vector<std::string>{name24});
  EXPECT_TRUE(Bytes() == old);

  folder.Write("in/Sub/2345678901234567890.DFF", "data");
  tool.AddFile(folder.Dos("IN\\sub/2345678901234567890.dff"));  // named as on disk
  tool.AddFile(folder.Dos("in\\L\xF6sche.txt"));                // made, empty
  EXPECT_EQ(folder.Read("in/L\u00F6sche.txt"), "");
  std::vector<Entry> entries = Numbered(2);
  entries.push_back({"2345678901234567890.DFF", "data"});
  entries.push_back({"L\xF6sche.txt", ""});
  ExpectOnDisk(entries);

  for (const char* nothing : {"no folder\\x", "in\\", "in", "", "*.dff"})
    EXPECT_THROW(tool.AddFile(*nothing ? folder.Dos(nothing) : ""), Failure) << nothing;
  ExpectOnDisk(entries);
}

TEST_F(ImgEditing, RemoveFileShiftsTheRegionAndNothingElse) {
  // Free space holds remains, which move down with the records.
  std::string old = RawArchive::Make(Numbered(5), 2);
  old.replace(8 + 5 * 32, 4096 - 8 - 5 * 32, Noise(4096 - 8 - 5 * 32, 11));
  for (const int removed : {1, 3, 5}) {
    Load(old);
    tool.RemoveFile("E" + std::to_string(removed));
    const auto slot = 8 + static_cast<std::size_t>(removed - 1) * 32;
    std::string expected = old;
    expected.erase(slot, 32).insert(4096 - 32, std::string(32, '\0'));
    expected.replace(4, 4, Number(4));
    EXPECT_TRUE(Bytes() == expected) << removed;
    ExpectMembersAreRight();
  }
}

TEST_F(ImgEditing, RemoveFileComparesNamesInLowerCase) {
  const std::string full = "exactly24characters.dff1";
  const std::string bytes =
      Filled(Header(5) + Record(1, 1, full) + Record(2, 1, "L\xD6SCHE.\xDF\0rest"s) +
             Record(3, 1, "abc.dff") + Record(4, 1, "ABC.DFF") + Record(5, 1, "x\xD7")) +
      Noise(std::size_t{5} * 2048, 12);
  Load(bytes);
  for (const std::string& none :
       {full, "abc.dff "s, "abc"s, ""s, "x\xF7"s, "l\xF6sche.\xDF\0rest"s}) {
    tool.RemoveFile(none);
    EXPECT_TRUE(Bytes() == bytes) << none;
  }
  tool.RemoveFile("aBC.dFf");  // the first of its name
  tool.RemoveFile("l\xF6sche.\xDF");
  EXPECT_EQ(Bytes().substr(0, 8 + 64), Header(3) + bytes.substr(8, 32) + bytes.substr(8 + 96, 32));
  ExpectMembersAreRight();
}

TEST_F(ImgEditing, RemovingTheLowestRecordFindsTheNextOne) {
  Load(Filled(Header(5) + Record(4, 1, "a") + Record(1, 1, "b") + Record(2, 1, "c") +
              Record(2, 2, "d") + Record(5, 0, "e")) +
       Noise(std::size_t{4} * 2048, 13));
  for (const char* name : {"b", "d", "a", "c"}) {
    tool.RemoveFile(name);
    ExpectMembersAreRight();
  }
  tool.RemoveFile("e");
  EXPECT_EQ(tool.EntryCount(), 0);
  EXPECT_EQ(Bytes().substr(0, 40), Header(0) + std::string(32, '\0'));
}

TEST_F(ImgEditing, LastRecordOutAndAnotherInWithoutALoadBetween) {
  Load(RawArchive::Make({{"only", Noise(3000, 14)}}));
  tool.RemoveFile("ONLY");
  tool.RemoveFile("only");
  // Adds and removes in a row, with moves on the way.
  std::vector<Entry> entries;
  for (int i = 0; i < 140; ++i) {
    const std::string name = "f" + std::to_string(i);
    entries.push_back({name, Noise(static_cast<std::size_t>(i) * 100, static_cast<unsigned>(i))});
    Add(name, entries.back().data);
    if (i % 5 == 4) {
      tool.RemoveFile(entries[static_cast<std::size_t>(i) / 2].name);
      entries.erase(entries.begin() + i / 2);
    }
  }
  ExpectOnDisk(entries);
  EXPECT_TRUE(tool.RebuildIMG(""));
  ExpectOnDisk(entries);
  ExpectMembersAreRight();
}

TEST_F(ImgEditing, RebuildWritesEntriesInDirectoryOrderWithoutGaps) {
  const std::string data = Noise(std::size_t{8} * 2048, 15);
  const std::string junk = "b\0 behind the name"s;
  const std::string full = "exactly24characters.dff1";
  const auto part = [&](std::size_t sector, std::size_t count) {
    return data.substr((sector - 3) * 2048, count * 2048);
  };
  std::string old =
      Filled(Header(3) + Record(9, 2, full) + Record(4, 1, junk) + Record(3, 0, "empty")) +
      Noise(4096, 16) + data;
  Load(old);
  std::vector<std::pair<double, double>> progress;
  int events = 0;
  tool.RebuildProgress = [&](double position, double count) {
    progress.emplace_back(position, count);
  };
  tool.DoEvents = [&] { ++events; };
  const std::string tail = Noise(30000, 18);
  folder.Write("a.img.tmp", tail);

  EXPECT_TRUE(tool.RebuildIMG(""));
  const std::string expected =
      Filled(Header(3) + Record(1, 2, full) + Record(3, 1, junk) + Record(4, 0, "empty")) +
      part(9, 2) + part(4, 1);
  EXPECT_TRUE(Bytes() == expected + tail.substr(expected.size()));
  EXPECT_THAT(folder.List(), testing::ElementsAre("a.img"));
  EXPECT_THAT(progress,
              testing::ElementsAre(std::pair(1.0, 3.0), std::pair(2.0, 3.0), std::pair(3.0, 3.0)));
  EXPECT_EQ(events, 3);
  ExpectMembersAreRight();
}

TEST_F(ImgEditing, RebuildNeedsNoLoadAndKeepsTheNameOnDisk) {
  for (const int count : {1, 63, 64}) {
    folder.Write("Models/GTA3.img", RawArchive::Make(Numbered(count), 9));
    clsIMGtool other(files);
    EXPECT_TRUE(other.RebuildIMG(folder.Dos("models\\gta3.IMG")));
    EXPECT_EQ(folder.List("Models"), std::vector<std::string>{"GTA3.img"});
    EXPECT_TRUE(folder.Read("Models/GTA3.img") ==
                RawArchive::Make(Numbered(count), count < 64 ? 1U : 2U));
  }
}

TEST_F(ImgEditing, RebuildLeavesWhatIsNoArchiveOrDamagedAlone) {
  folder.Write("a.img", "no archive at all");
  EXPECT_FALSE(tool.RebuildIMG(folder.Dos("a.img")));
  EXPECT_EQ(Bytes(), "no archive at all");
  EXPECT_EQ(folder.List(), std::vector<std::string>{"a.img"});
  for (const std::string& record : {Record(-1, 1, "b"), Record(1, -1, "b"), Record(2, 2, "b"),
                                    Record(1048576, 1, "b"), Record(2147483647, 2147483647, "b")}) {
    const std::string bytes = Filled(Header(2) + Record(1, 1, "a") + record) + Noise(4096, 19);
    folder.Write("a.img", bytes);
    EXPECT_THROW(tool.RebuildIMG(folder.Dos("a.img")), Failure);
    EXPECT_TRUE(Bytes() == bytes);
  }
}

TEST_F(ImgEditing, RebuildNamesTheRecordsWithoutDataAndHowTheyGo) {
  Load(Filled(Header(5) + Record(1, 1, "gut") + Record(9, 1, "weg.dff") + Record(9, 1, "GUT") +
              Record(1, 7, "lang") + Record(2, 1, "b")) +
       Noise(4096, 21));
  try {
    tool.RebuildIMG("");
    FAIL();
  } catch (const Failure& failure) {
    // By the name of the third record, the first one would go.
    EXPECT_THAT(
        failure.what(),
        testing::HasSubstr(
            "record 2, \"weg.dff\", has 2048 bytes at 18432, which don't lie in the file's "
            "6144 bytes; record 3, \"GUT\", has 2048 bytes at 18432, which don't lie in the "
            "file's 6144 bytes; record 4, \"lang\", has 14336 bytes at 2048, which don't lie "
            "in the file's 6144 bytes; \"kvpk remove\" takes them out: \"weg.dff\" \"lang\""));
  }
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"a.img", "a.img.tmp"}));
}

/// Lets an operation on "a.img" fail at its first, second, ... operation on disk.
class ImgFaults : public testing::Test {
 protected:
  using Operation = std::function<void(clsIMGtool&)>;
  using Check = std::function<void(const std::string& when)>;

  void FailEverywhere(const std::string& bytes, const Operation& operation, const Check& check) {
    for (const bool once : {true, false}) {
      bool failed = true;
      int n = 0;
      while (failed && n < 500) {
        folder.Write("a.img", bytes);
        folder.Write("new", newData);
        clsIMGtool tool(files);
        ASSERT_TRUE(tool.Load(folder.Dos("a.img")));
        files.Faults().FailAt(++n, once);
        try {
          operation(tool);
          failed = false;
        } catch (const Failure&) {
        }
        files.Faults().FailAt(0);
        check((failed ? "failed at " : "passed at ") + std::to_string(n));
      }
      EXPECT_FALSE(failed);
      EXPECT_GT(n, 4);
    }
  }

  [[nodiscard]] bool IsReadable(const Entry& entry) {
    clsIMGtool fresh(files);
    if (!fresh.Load(folder.Dos("a.img"))) return false;
    try {
      folder.Write("out", "");
      return fresh.Export(entry.name, folder.Dos("out")) &&
             folder.Read("out") == RawArchive::Filled(entry.data);
    } catch (const Failure&) {
      return false;
    }
  }

  TempFolder folder;
  FileSystem files;
  const std::string newData = Noise(5000, 20);
};

TEST_F(ImgFaults, AddFileLosesNoEntry) {
  for (const int count : {5, 63}) {  // without and with a move
    const std::vector<Entry> old = Numbered(count);
    const std::string whole = RawArchive::Make(old);
    const std::string before = whole.substr(0, whole.size() - 100);  // which is padded first
    const Entry last = {old.back().name, old.back().data.substr(0, 1948)};
    FailEverywhere(
        before, [&](clsIMGtool& tool) { tool.AddFile(folder.Dos("new")); },
        [&](const std::string& when) {
          for (std::size_t i = 1; i + 1 < old.size(); ++i)
            EXPECT_TRUE(IsReadable(old[i])) << when << ": " << old[i].name;
          // The record of one that moves goes to disk ahead of its data: that stays until then.
          const std::string now = folder.Read("a.img");
          EXPECT_TRUE(IsReadable(old[0]) || now.substr(2048, 2048) == old[0].data) << when;
          EXPECT_TRUE(now.substr(4096, before.size() - 4096) == before.substr(4096)) << when;
          EXPECT_EQ(folder.Read("new"), newData);
          EXPECT_TRUE(when.starts_with("failed") ||
                      (IsReadable(old[0]) && IsReadable(last) && IsReadable({"new", newData})));
        });
  }
}

TEST_F(ImgFaults, ReplaceFileChangesNothingWhereThereIsNoRoom) {
  const std::string before = RawArchive::Make(Numbered(63));
  std::string cause;
  int fullDisks = 0;
  FailEverywhere(
      before,
      [&](clsIMGtool& tool) {
        cause.clear();
        try {
          tool.ReplaceFile("E2", folder.Dos("new"));
        } catch (const Failure& failure) {
          cause = failure.what();
          throw;
        }
      },
      [&](const std::string& when) {
        const bool isFull = cause.starts_with("reserve");
        fullDisks += isFull ? 1 : 0;
        EXPECT_TRUE(!isFull || folder.Read("a.img") == before) << when;
        EXPECT_TRUE(!cause.empty() ||
                    (IsReadable({"new", newData}) && !IsReadable(Numbered(2)[1])));
      });
  EXPECT_EQ(fullDisks, 2);
}

TEST_F(ImgFaults, RebuildLeavesTheOldOrTheNewArchiveWhole) {
  const std::string before = RawArchive::Make(Numbered(6), 4);
  const std::string after = RawArchive::Make(Numbered(6), 1);
  FailEverywhere(
      before, [&](clsIMGtool& tool) { tool.RebuildIMG(""); },
      [&](const std::string& when) {
        const std::string now = folder.Read("a.img");
        const bool passed = when.starts_with("passed");
        EXPECT_TRUE(now == after || (!passed && now == before)) << when;
        EXPECT_TRUE(!passed || folder.Read("a.img.tmp") == "(missing)");
      });
}

}  // namespace
