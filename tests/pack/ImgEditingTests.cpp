#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
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
  std::vector<Entry> OnDisk() {
    clsIMGtool fresh(files);
    EXPECT_TRUE(fresh.Load(folder.Dos("a.img")));
    std::vector<Entry> entries;
    const std::string bytes = Bytes();
    for (const udtIMGEntry& entry : fresh.Entries()) {
      const auto offset = static_cast<std::size_t>(entry.Offset);
      const auto size = static_cast<std::size_t>(entry.Size);
      const bool inFile = offset + size <= bytes.size();
      entries.push_back({entry.Name, inFile ? bytes.substr(offset, size) : "beyond the file"});
    }
    return entries;
  }

  void ExpectOnDisk(const std::vector<Entry>& expected) {
    const std::vector<Entry> found = OnDisk();
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      EXPECT_EQ(found[i].name, expected[i].name);
      EXPECT_TRUE(found[i].data == Filled(expected[i].data)) << found[i].name;
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
  struct Case {
    std::size_t length;
    int sectors;
  };
  for (const Case& c : {Case{0, 0}, Case{1, 1}, Case{2047, 1}, Case{2048, 1}, Case{2049, 2}}) {
    std::string old = RawArchive::Make(Numbered(62));
    // What stood in the slot stays there behind the name's NUL.
    const std::string leftovers = Noise(32, 9);
    old.replace(8 + 62 * 32, 32, leftovers);
    Load(old);
    const std::string data = Noise(c.length, 8);
    Add("New.dff", data);

    std::string expected = old;
    expected.replace(4, 4, Number(63));
    expected.replace(8 + 62 * 32, 16, Number(63) + Number(c.sectors) + "New.dff\0"s);
    expected += Filled(data);
    EXPECT_TRUE(Bytes() == expected) << c.length;
    EXPECT_EQ(tool.EntryCount(), 63);
    EXPECT_EQ(tool.NextEntryPos(), 9 + 32 * 63);
    EXPECT_EQ(tool.LowestOffset(), 2048);
    EXPECT_EQ(tool.Entries().size(), 62U);
    EXPECT_FALSE(tool.ExistsInIMG("New.dff"));
    EXPECT_FALSE(tool.Export("New.dff", folder.Dos("out")));
    std::vector<Entry> entries = Numbered(62);
    entries.push_back({"New.dff", data});
    ExpectOnDisk(entries);
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
  EXPECT_EQ(tool.LowestOffset(), 4096);
  EXPECT_EQ(tool.LowestEntryPos(), 9 + 32);
  ExpectMembersAreRight();
  EXPECT_TRUE(tool.Export("e1", folder.Dos("out")));
  EXPECT_EQ(folder.Read("out"), Numbered(1)[0].data);

  Add("new", "a second one of the name");  // now there is room for 63 more
  EXPECT_EQ(tool.Entries().size(), 64U);
  std::vector<Entry> entries = Numbered(63);
  entries.push_back({"new", "content"});
  entries.push_back({"new", "a second one of the name"});
  ExpectOnDisk(entries);
}

TEST_F(ImgEditing, AddFileNeverOverwritesDataWhenOneMoveFreesNoRoom) {
  std::vector<Entry> entries = Numbered(63);
  const auto directory = [&](const std::vector<std::pair<int, int>>& places) {
    std::string head = Header(63);
    for (std::size_t i = 0; i < places.size(); ++i)
      head += Record(places[i].first, places[i].second, entries[i].name);
    return Filled(head);
  };
  const auto addAndCheck = [&](const std::string& bytes, const std::vector<Entry>& before) {
    Load(bytes);
    Add("new1", "first");
    Add("new2", "second");
    std::vector<Entry> expected = before;
    expected.push_back({"new1", "first"});
    expected.push_back({"new2", "second"});
    ExpectOnDisk(expected);
    EXPECT_EQ(Bytes().size() % 2048, 0U);
  };
  const std::string data = Noise(std::size_t{3} * 2048, 10);

  // The lowest entry is empty; several share the lowest offset; some of them are empty.
  std::vector<std::pair<int, int>> places(63, {2, 1});
  for (Entry& entry : entries) entry.data = data.substr(2048, 2048);
  places[5] = {1, 0};
  entries[5].data = "";
  places[9] = {1, 1};
  entries[9].data = data.substr(0, 2048);
  places[20] = {1, 3};
  entries[20].data = data;
  places[62] = {1, 0};
  entries[62].data = "";
  addAndCheck(directory(places) + data, entries);

  // Nothing but empty entries at the very end of the file.
  for (Entry& entry : entries) entry.data = "";
  addAndCheck(directory(std::vector<std::pair<int, int>>(63, {1, 0})), entries);
}

TEST_F(ImgEditing, AddFilePadsAnArchiveToWholeSectorsFirst) {
  for (const int count : {3, 63}) {  // without and with a move
    for (const std::size_t missing : {std::size_t{1}, std::size_t{2047}}) {
      std::vector<Entry> entries = Numbered(count);
      entries.back().data.resize(2048 - missing);
      const std::string whole = RawArchive::Make(entries);
      Load(whole.substr(0, whole.size() - missing));
      Add("new", "n");
      entries.push_back({"new", "n"});
      ExpectOnDisk(entries);
    }
  }
}

TEST_F(ImgEditing, AddFileTakesTheBareNameOfAtMost23Bytes) {
  const std::string old = RawArchive::Make(Numbered(2));
  Load(old);
  const std::string name23 = "12345678901234567890.dff";
  ASSERT_EQ(name23.size(), 24U);
  folder.Write("in/" + name23, "data");
  EXPECT_THROW(tool.AddFile(folder.Dos("in\\" + name23)), Failure);
  EXPECT_THROW(tool.AddFile(folder.Dos("in\\missing-" + name23)), Failure);
  EXPECT_EQ(folder.List("in"), std::vector<std::string>{name23});
  EXPECT_TRUE(Bytes() == old);
  EXPECT_EQ(tool.EntryCount(), 2);

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
    EXPECT_TRUE(tool.ExistsInIMG("e" + std::to_string(removed)));  // as of the last Load
    ExpectMembersAreRight();
  }
}

TEST_F(ImgEditing, RemoveFileComparesNamesInLowerCase) {
  const std::string full = "exactly24characters.dff1";
  const std::string bytes =
      Filled(Header(5) + Record(1, 1, full) + Record(2, 1, "L\xD6SCHE.\xDF\0rest"s) +
             Record(3, 1, "abc.dff") + Record(4, 1, "ABC.DFF") + Record(5, 1, "x\xD7")) +
      Noise(std::size_t{5} * 2048, 12);
  struct Case {
    std::string name;
    int removed;  // 1-based record, 0 none
  };
  for (const Case& c :
       {Case{full, 0}, Case{"abc.dff ", 0}, Case{"abc", 0}, Case{"", 0}, Case{"x\xF7", 0},
        Case{"l\xF6sche.\xDF\0rest"s, 0}, Case{"l\xF6sche.\xDF", 2}, Case{"aBC.dFf", 3}}) {
    Load(bytes);
    tool.RemoveFile(c.name);
    if (c.removed == 0) {
      EXPECT_TRUE(Bytes() == bytes) << c.name;
      EXPECT_EQ(tool.EntryCount(), 5);
    } else {
      EXPECT_EQ(Bytes().size(), bytes.size());
      EXPECT_EQ(Bytes().substr(8 + static_cast<std::size_t>(c.removed - 1) * 32, 32),
                bytes.substr(8 + static_cast<std::size_t>(c.removed) * 32, 32))
          << c.name;
    }
    ExpectMembersAreRight();
  }
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
  EXPECT_EQ(tool.NextEntryPos(), 9);
  EXPECT_EQ(tool.LowestOffset(), 5 * 2048);
  EXPECT_EQ(Bytes().substr(0, 40), Header(0) + std::string(32, '\0'));
  EXPECT_THROW(tool.Load(""), Failure);
}

TEST_F(ImgEditing, LastRecordOutAndAnotherInWithoutALoadBetween) {
  Load(RawArchive::Make({{"only", Noise(3000, 14)}}));
  tool.RemoveFile("ONLY");
  tool.RemoveFile("only");
  Add("next", "n");
  EXPECT_EQ(tool.EntryCount(), 1);
  ExpectOnDisk({{"next", "n"}});
  // Adds and removes in a row, with moves on the way.
  std::vector<Entry> entries = {{"next", "n"}};
  for (int i = 0; i < 140; ++i) {
    const std::string name = "f" + std::to_string(i);
    entries.push_back({name, Noise(static_cast<std::size_t>(i) * 100, static_cast<unsigned>(i))});
    Add(name, entries.back().data);
    if (i % 5 == 4) {
      tool.RemoveFile(entries[static_cast<std::size_t>(i) / 2].name);
      entries.erase(entries.begin() + i / 2);
      EXPECT_EQ(tool.EntryCount(), static_cast<double>(entries.size()));
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
  folder.Write("A.IMG.tmp", Noise(30000, 17));  // another file: an exact match goes first
  const std::string tail = Noise(30000, 18);
  folder.Write("a.img.tmp", tail);

  std::string path;
  EXPECT_TRUE(tool.RebuildIMG(path));
  EXPECT_EQ(path, folder.Dos("a.img"));
  const std::string expected =
      Filled(Header(3) + Record(1, 2, full) + Record(3, 1, junk) + Record(4, 0, "empty")) +
      part(9, 2) + part(4, 1);
  EXPECT_TRUE(Bytes() == expected + tail.substr(expected.size()));
  EXPECT_THAT(folder.List(), testing::ElementsAre("A.IMG.tmp", "a.img"));
  EXPECT_THAT(progress,
              testing::ElementsAre(std::pair(1.0, 3.0), std::pair(2.0, 3.0), std::pair(3.0, 3.0)));
  EXPECT_EQ(events, 3);
  ExpectMembersAreRight();
  EXPECT_EQ(tool.Entries().size(), 3U);
}

TEST_F(ImgEditing, RebuildNeedsNoLoadAndKeepsTheNameOnDisk) {
  for (const int count : {1, 62, 63, 64, 127}) {
    folder.Write("Models/GTA3.img", RawArchive::Make(Numbered(count), 9));
    clsIMGtool other(files);
    EXPECT_TRUE(other.RebuildIMG(folder.Dos("models\\gta3.IMG")));
    EXPECT_EQ(folder.List("Models"), std::vector<std::string>{"GTA3.img"});
    EXPECT_TRUE(folder.Read("Models/GTA3.img") ==
                RawArchive::Make(Numbered(count), count < 64 ? 1U : 2U));
    EXPECT_EQ(other.EntryCount(), count);
  }
}

TEST_F(ImgEditing, RebuildLeavesWhatIsNoArchiveOrDamagedAlone) {
  folder.Write("no.img", "no archive at all");
  EXPECT_FALSE(tool.RebuildIMG(folder.Dos("no.img")));
  EXPECT_EQ(folder.Read("no.img"), "no archive at all");
  EXPECT_EQ(folder.List(), std::vector<std::string>{"no.img"});

  for (const std::string& record : {Record(-1, 1, "b"), Record(1, -1, "b"), Record(2, 2, "b"),
                                    Record(1048576, 1, "b"), Record(2147483647, 2147483647, "b")}) {
    const std::string bytes = Filled(Header(2) + Record(1, 1, "a") + record) + Noise(4096, 19);
    folder.Write("a.img", bytes);
    EXPECT_THROW(tool.RebuildIMG(folder.Dos("a.img")), Failure);
    EXPECT_TRUE(Bytes() == bytes);
  }
}

}  // namespace
