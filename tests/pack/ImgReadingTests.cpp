#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

using namespace std::string_literals;
using RawArchive::Filled;
using RawArchive::Header;
using RawArchive::Noise;
using RawArchive::Record;

namespace {

class ImgReading : public testing::Test {
 protected:
  /// Loads an archive of these bytes as "a.img".
  bool Load(const std::string& bytes) {
    folder.Write("a.img", bytes);
    return tool.Load(folder.Dos("a.img"));
  }

  TempFolder folder;
  FileSystem files;
  clsIMGtool tool{files};
};

TEST_F(ImgReading, NumbersAre32BitLittleEndian) {
  for (const double number : {513., -1., -2147483648., 2147483647.}) {
    const std::string bytes = RawArchive::Number(static_cast<std::int64_t>(number));
    EXPECT_EQ(clsIMGtool::BytesToNumber(bytes), number);
    EXPECT_EQ(clsIMGtool::NumberToBytes(number), bytes);
  }
  const std::vector<std::pair<double, std::int64_t>> roundings = {
      {1.5, 2}, {2.5, 2}, {-1.5, -2}, {2147483647.25, 2147483647}, {-2147483648.5, -2147483648LL}};
  for (const auto& [number, rounded] : roundings)
    EXPECT_EQ(clsIMGtool::NumberToBytes(number), RawArchive::Number(rounded)) << number;
  for (const double tooFar :
       {2147483647.5, -2147483648.75, 1e300, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(clsIMGtool::NumberToBytes(tooFar), Failure) << tooFar;
}

TEST_F(ImgReading, LoadReadsNamesPlacesAndLowestRecord) {
  const std::string bytes =
      Filled(Header(6) + Record(3, 1, "plain.dff") + Record(1, 2, "junk.dff\0what was here"s) +
             Record(5, 0, "exactly24characters.dff1") + Record(1, 1, "L\xD6SCHE.TXD") +
             Record(-1, -2, "") + Record(-1, 1, "last")) +
      Noise(std::size_t{6} * 2048, 1);
  ASSERT_TRUE(Load(bytes));
  EXPECT_EQ(tool.IMGFile(), folder.Dos("a.img"));
  EXPECT_EQ(tool.EntryCount(), 6);
  EXPECT_EQ(tool.NextEntryPos(), 9 + 32 * 6);
  EXPECT_EQ(tool.LowestOffset(), -2048);         // a negative one isn't rejected at reading
  EXPECT_EQ(tool.LowestEntryPos(), 9 + 32 * 5);  // the last of those that share it

  std::string entries;
  for (const udtIMGEntry& entry : tool.Entries())
    entries += Concat(entry.Name, " ", entry.Offset / 2048, " ", entry.Size / 2048, "\n");
  EXPECT_EQ(entries,
            "plain.dff 3 1\njunk.dff 1 2\nexactly24characters.dff1 5 0\nL\xD6SCHE.TXD 1 1\n"
            " -1 -2\nlast -1 1\n");
  EXPECT_THROW(tool.Export("", folder.Dos("out")), Failure);
}

TEST_F(ImgReading, WithoutTheMagicTheDirectoryStaysAndThePathIsTaken) {
  ASSERT_TRUE(Load(RawArchive::Make(RawArchive::Numbered(2))));
  for (const std::string& content : {"ver2\x01\0\0\0"s, "VER"s, ""s}) {
    folder.Write("no.img", content);
    EXPECT_FALSE(tool.Load(folder.Dos("no.img")));
    EXPECT_EQ(tool.IMGFile(), folder.Dos("no.img"));
    EXPECT_TRUE(tool.ExistsInIMG("e1"));
  }
  EXPECT_FALSE(tool.Load(folder.Dos("Neu.img")));
  EXPECT_EQ(folder.Read("Neu.img"), "");
  EXPECT_THROW(tool.Load(folder.Dos("no folder\\a.img")), Failure);
  EXPECT_THROW(tool.Load(folder.Dos("")), Failure);
}

TEST_F(ImgReading, DirectoriesThatCannotBeAreFailures) {
  const std::string two = Record(1, 1, "a") + Record(2, 1, "b");
  const std::vector<std::string> bad = {
      "VER2",
      "VER2\x01\0"s,
      Filled(Header(0)),
      Filled(Header(-1) + two) + Noise(4096, 4),
      Filled(Header(std::numeric_limits<std::int32_t>::max()) + two),
      Filled(Header(64) + two),                     // one record more than the file holds
      Header(2) + two.substr(0, 63),                // ends inside the last record
      Filled(Header(1) + Record(1048576, 1, "a")),  // 2 GiB
      Filled(Header(1) + Record(1, 1048576, "a")),
      Filled(Header(2) + Record(1, 1, "a") + Record(-1048577, 1, "b"))};
  for (const std::string& bytes : bad) {
    EXPECT_THROW(Load(bytes), Failure) << bytes.size();
    EXPECT_EQ(folder.Read("a.img"), bytes);
  }
  // The directory may end with the file, and data may be claimed that isn't there, until it's read.
  EXPECT_TRUE(Load(Header(2) + two));
  EXPECT_EQ(tool.LowestOffset(), 8 + 64);
  EXPECT_TRUE(Load(Filled(Header(2) + Record(1048575, 1048575, "far") + Record(1, 1, "half")) +
                   Noise(2047, 5)));
  EXPECT_THROW(tool.Export("far", folder.Dos("out")), Failure);
  EXPECT_FALSE(std::filesystem::exists(folder.At("out")));
  // Other makers don't fill up the last sector of the file.
  EXPECT_TRUE(tool.Export("half", folder.Dos("out")));
  EXPECT_EQ(folder.Read("out"), Noise(2047, 5) + '\0');
}

TEST_F(ImgReading, ExportWritesWholeSectorsOverTheStartOfAFile) {
  const std::string first = Noise(2049, 6);
  ASSERT_TRUE(Load(
      RawArchive::Make({{"abc.dff", first}, {"empty", ""}, {"abc.dff", "second of its name"}})));
  EXPECT_TRUE(tool.ExistsInIMG("abc.dff"));
  for (const char* name : {"ABC.DFF", "abc.df", "abc.dff ", ""}) {
    EXPECT_FALSE(tool.ExistsInIMG(name)) << name;
    EXPECT_FALSE(tool.Export(name, folder.Dos("out"))) << name;
  }
  EXPECT_EQ(folder.List(), std::vector<std::string>{"a.img"});

  EXPECT_TRUE(tool.Export("abc.dff", folder.Dos("out")));
  EXPECT_EQ(folder.Read("out"), Filled(first));
  const std::string longer = Noise(5000, 7);
  folder.Write("out", longer);
  EXPECT_TRUE(tool.Export("abc.dff", folder.Dos("out")));
  EXPECT_EQ(folder.Read("out"), Filled(first) + longer.substr(4096));
  EXPECT_TRUE(tool.Export("empty", folder.Dos("new")));
  EXPECT_EQ(folder.Read("new"), "");
}

TEST_F(ImgReading, MoreThan32767RecordsCannotBeSearched) {
  const auto make = [](int count) {
    std::string bytes = Header(count) + Record(600, 0, "first");
    for (int i = 1; i < count; ++i) bytes += Record(600, 0, "e");
    return Filled(bytes, std::size_t{600} * 2048);
  };
  ASSERT_TRUE(Load(make(32767)));
  EXPECT_TRUE(tool.ExistsInIMG("first"));
  EXPECT_FALSE(tool.ExistsInIMG("none"));
  ASSERT_TRUE(Load(make(32768)));
  EXPECT_THROW((void)tool.ExistsInIMG("none"), Failure);
  EXPECT_THROW(tool.Export("first", folder.Dos("out")), Failure);
}

}  // namespace
