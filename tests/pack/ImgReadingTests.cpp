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
  struct Case {
    std::string bytes;
    double number;
  };
  for (const Case& c :
       {Case{"\x01\x02\x00\x00"s, 513}, Case{"\xFF\xFF\xFF\xFF"s, -1},
        Case{"\x00\x00\x00\x80"s, -2147483648.0}, Case{"\xFF\xFF\xFF\x7F"s, 2147483647}}) {
    EXPECT_EQ(clsIMGtool::BytesToNumber(c.bytes), c.number);
    EXPECT_EQ(clsIMGtool::NumberToBytes(c.number), c.bytes);
  }
  struct Rounding {
    double number;
    std::int64_t rounded;
  };
  for (const Rounding& r :
       {Rounding{0.5, 0}, Rounding{1.5, 2}, Rounding{2.5, 2}, Rounding{-0.5, 0}, Rounding{-1.5, -2},
        Rounding{2.5000001, 3}, Rounding{4097.0 / 2048, 2},
        Rounding{2147483647.5 - 0.25, 2147483647}, Rounding{-2147483648.5, -2147483648LL}})
    EXPECT_EQ(clsIMGtool::NumberToBytes(r.number), RawArchive::Number(r.rounded)) << r.number;
  for (const double tooFar : {2147483647.5, 2147483648.0, -2147483648.75, 1e300,
                              std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(clsIMGtool::NumberToBytes(tooFar), Failure) << tooFar;
}

TEST_F(ImgReading, LoadReadsNamesPlacesAndLowestRecord) {
  const std::string bytes =
      Filled(Header(6) + Record(3, 1, "plain.dff") + Record(1, 2, "junk.dff\0what was here"s) +
             Record(5, 0, "exactly24characters.dff1") + Record(1, 1, "L\xD6SCHE.TXD") +
             Record(-1, -2, "") + Record(6, 1, "last")) +
      Noise(std::size_t{6} * 2048, 1);
  ASSERT_TRUE(Load(bytes));
  EXPECT_EQ(tool.IMGFile(), folder.Dos("a.img"));
  EXPECT_EQ(tool.EntryCount(), 6);
  EXPECT_EQ(tool.NextEntryPos(), 9 + 32 * 6);
  EXPECT_EQ(tool.LowestOffset(), -2048);  // a negative one isn't rejected at reading
  EXPECT_EQ(tool.LowestEntryPos(), 9 + 32 * 4);

  struct Expected {
    std::string name;
    std::int32_t offset;
    std::int32_t size;
  };
  const std::vector<Expected> expected = {{"plain.dff", 3 * 2048, 2048},
                                          {"junk.dff", 2048, 4096},
                                          {"exactly24characters.dff1", 5 * 2048, 0},
                                          {"L\xD6SCHE.TXD", 2048, 2048},
                                          {"", -2048, -4096},
                                          {"last", 6 * 2048, 2048}};
  ASSERT_EQ(tool.Entries().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(tool.Entries()[i].Name, expected[i].name);
    EXPECT_EQ(tool.Entries()[i].Offset, expected[i].offset);
    EXPECT_EQ(tool.Entries()[i].Size, expected[i].size);
  }
  EXPECT_THROW(tool.Export("", folder.Dos("out")), Failure);
  EXPECT_FALSE(std::filesystem::exists(folder.At("out")));
}

TEST_F(ImgReading, LastOfEqualLowestOffsetsCountsAndEmptyMeansTheSamePath) {
  ASSERT_TRUE(Load(Filled(Header(3) + Record(2, 1, "a") + Record(1, 1, "b") + Record(1, 0, "c")) +
                   Noise(4096, 2)));
  EXPECT_EQ(tool.LowestOffset(), 2048);
  EXPECT_EQ(tool.LowestEntryPos(), 9 + 32 * 2);

  folder.Write("a.img", RawArchive::Make(RawArchive::Numbered(2)));
  std::string path;
  EXPECT_TRUE(tool.Load(path));
  EXPECT_EQ(path, folder.Dos("a.img"));
  EXPECT_EQ(tool.EntryCount(), 2);

  folder.Write("b.img", RawArchive::Make(RawArchive::Numbered(5)));
  tool.SetIMGFile(folder.Dos("b.img"));
  EXPECT_EQ(tool.EntryCount(), 5);
}

TEST_F(ImgReading, WithoutTheMagicTheDirectoryStaysAndThePathIsTaken) {
  ASSERT_TRUE(Load(RawArchive::Make(RawArchive::Numbered(2))));
  for (const std::string& content : {"ver2\x01\0\0\0"s, "VER"s, ""s, "VER1"s + Noise(64, 3)}) {
    folder.Write("no.img", content);
    EXPECT_FALSE(tool.Load(folder.Dos("no.img")));
    EXPECT_EQ(tool.IMGFile(), folder.Dos("no.img"));
    EXPECT_EQ(tool.EntryCount(), 2);
    EXPECT_EQ(tool.NextEntryPos(), 9 + 64);
    EXPECT_EQ(tool.LowestOffset(), 2048);
    EXPECT_EQ(tool.Entries().size(), 2U);
    EXPECT_TRUE(tool.ExistsInIMG("e1"));
    EXPECT_EQ(folder.Read("no.img"), content);
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
      Filled(Header(std::numeric_limits<std::int32_t>::min()) + two),
      Filled(Header(std::numeric_limits<std::int32_t>::max()) + two),
      Filled(Header(64) + two),                     // one record more than the file holds
      Header(2) + two.substr(0, 63),                // ends inside the last record
      Filled(Header(1) + Record(1048576, 1, "a")),  // 2 GiB
      Filled(Header(1) + Record(1, 1048576, "a")),
      Filled(Header(1) + Record(2147483647, 1, "a")),
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
  EXPECT_FALSE(tool.ExistsInIMG(""));
  EXPECT_FALSE(tool.Export("abc.dff", folder.Dos("out")));

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

TEST_F(ImgReading, ReadOnlyArchiveLoadsAndExports) {
  folder.Write("a.img", RawArchive::Make({{"x", "data"}}));
  std::filesystem::permissions(folder.At("a.img"), std::filesystem::perms::owner_read);
  ASSERT_TRUE(tool.Load(folder.Dos("a.img")));
  EXPECT_TRUE(tool.Export("x", folder.Dos("out")));
  EXPECT_EQ(folder.Read("out"), Filled("data"));
  const std::string before = folder.Read("a.img");
  folder.Write("new", "n");
  EXPECT_THROW(tool.AddFile(folder.Dos("new")), Failure);
  EXPECT_THROW(tool.RemoveFile("x"), Failure);
  EXPECT_THROW(tool.RebuildIMG(""), Failure);
  EXPECT_EQ(folder.Read("a.img"), before);
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
  EXPECT_EQ(tool.EntryCount(), 32768);
  EXPECT_EQ(tool.NextEntryPos(), 9 + 32 * 32768);
  EXPECT_THROW((void)tool.ExistsInIMG("none"), Failure);
  EXPECT_THROW(tool.Export("first", folder.Dos("out")), Failure);
  EXPECT_FALSE(std::filesystem::exists(folder.At("out")));
}

}  // namespace
