#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tools/Kvpk.h"

using nlohmann::ordered_json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::size_t LinesIn(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(CommandLine, ExitStatusTellsUsageFromInput) {
  const TempFolder folder;
  folder.Write("text", "no archive at all");
  folder.Write("small", "VER");
  folder.Write("lying.img", std::string("VER2\xFF\xFF\xFF\x7F", 8) + std::string(4000, '\0'));
  WriteArchive(folder, "good.img", {{"a", "1"}});
  struct Case {
    std::vector<std::string> arguments;
    int exitStatus;
  };
  const std::vector<Case> cases{
      {{"--help"}, 0},
      {{"--version"}, 0},
      {{"list", "--help"}, 0},
      {{}, 2},
      {{"frobnicate"}, 2},
      {{"list"}, 2},
      {{"list", "good.img", "more"}, 2},
      {{"list", "--xml", "good.img"}, 2},
      {{"list", "good.img"}, 0},
      {{"list", "text"}, 1},
      {{"list", "small"}, 1},
      {{"list", "lying.img"}, 1},
      {{"list", "."}, 1},
      {{"add", "good.img"}, 2},
      {{"rebuild", "text"}, 1},
      {{"cipher", "text", "out", "--pass", ""}, 2},
      {{"cipher", "text", "out", "--pass", std::string(65, 'x')}, 2},
      {{"cipher", "text", "out", "--pass", "\xE6\x97\xA5"}, 2},
      {{"cipher", "text", "./text"}, 2},
      {{"cipher", "missing", "out"}, 1},
      {{"script", "text"}, 2},
      {{"install", "good.img", "--game", "."}, 1},
      {{"unpack", "good.img", "folder"}, 1},
      {{"unpack", "text", "folder"}, 1},
  };
  for (const Case& one : cases) {
    const KvpkRun run = Kvpk(folder, one.arguments);
    EXPECT_EQ(run.exitStatus, one.exitStatus) << testing::PrintToString(one.arguments);
    if (one.exitStatus != 1) continue;
    EXPECT_THAT(run.errors, StartsWith("kvpk: "));
    EXPECT_EQ(LinesIn(run.errors), 1U) << run.errors;
  }
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"good.img", "lying.img", "small", "text"}));
}

TEST(List, GivesTheDirectoryAsJsonInOrder) {
  const TempFolder folder;
  WriteArchive(folder, "a.img",
               {{"Stra\xDF"
                 "e.dff",
                 std::string(2049, 'x')},
                {"\x1B\x81", ""},
                {"name-of-24-characters.tx", "y"}});
  const KvpkRun run = Kvpk(folder, {"list", "a.img", "--json"});
  EXPECT_EQ(ordered_json::parse(run.output).dump(),
            R"({"entryCount":3,"nextEntryPos":105,"lowestOffset":2048,"lowestEntryPos":9,)"
            R"("entries":[{"name":"Straße.dff","offset":2048,"size":4096},)"
            "{\"name\":\"\\u001b\xC2\x81\",\"offset\":6144,\"size\":0},"
            R"({"name":"name-of-24-characters.tx","offset":6144,"size":2048}]})");
  const KvpkRun plain = Kvpk(folder, {"list", "a.img"});
  EXPECT_EQ(plain.output.find('\x1B'), std::string::npos) << "a name must not steer the terminal";
}

TEST(List, ChangesAndCreatesNothing) {
  const TempFolder folder;
  WriteArchive(folder, "a.img", {{"a", "1"}});
  const std::string bytes = folder.Read("a.img");
  const auto longAgo = std::filesystem::last_write_time(folder.At("a.img")) - std::chrono::hours(9);
  std::filesystem::last_write_time(folder.At("a.img"), longAgo);
  std::filesystem::permissions(folder.At("a.img"), std::filesystem::perms::owner_read);
  EXPECT_EQ(Kvpk(folder, {"list", "a.img", "--json"}).exitStatus, 0);
  EXPECT_EQ(folder.Read("a.img"), bytes);
  EXPECT_EQ(std::filesystem::last_write_time(folder.At("a.img")), longAgo);

  for (const char* command : {"list", "info", "rebuild"}) {
    EXPECT_EQ(Kvpk(folder, {command, "b.img"}).exitStatus, 1);
  }
  EXPECT_EQ(folder.List(), std::vector<std::string>{"a.img"});
}

TEST(Edit, AddsRemovesExportsAndRebuilds) {
  const TempFolder folder;
  WriteArchive(folder, "a.img", {{"old.dff", std::string(5000, 'o')}, {"keep.txd", "keep"}});
  folder.Write("new.dff", "new");
  folder.Write("second.dff", "second");
  EXPECT_EQ(Kvpk(folder, {"add", "a.img", "new.dff", "second.dff"}).exitStatus, 0);
  EXPECT_EQ(Kvpk(folder, {"remove", "a.img", "OLD.DFF"}).exitStatus, 0);
  const auto before = folder.Read("a.img").size();
  EXPECT_EQ(Kvpk(folder, {"rebuild", "a.img"}).exitStatus, 0);
  EXPECT_EQ(folder.Read("a.img").size(), before - 6144);
  folder.Write("out", std::string(3000, '#'));
  EXPECT_EQ(Kvpk(folder, {"export", "a.img", "second.dff", "out"}).exitStatus, 0);
  EXPECT_EQ(folder.Read("out"), "second" + std::string(2042, '\0') + std::string(952, '#'));
  const auto entries = EntriesOf(folder, "a.img");
  EXPECT_EQ(entries.size(), 3U);
  EXPECT_THAT(entries.at("keep.txd"), StartsWith("keep"));
}

TEST(Edit, RefusesWhatIsNotThere) {
  const TempFolder folder;
  WriteArchive(folder, "a.img", {{"a.dff", "a"}, {"b.dff", "b"}, {"c.dff", "c"}});
  folder.Write("new.dff", "new");
  const std::string bytes = folder.Read("a.img");
  EXPECT_EQ(Kvpk(folder, {"add", "a.img", "new.dff", "missing.dff"}).exitStatus, 1);
  EXPECT_EQ(Kvpk(folder, {"add", "a.img", "a.img"}).exitStatus, 2);
  EXPECT_EQ(Kvpk(folder, {"export", "a.img", "A.DFF", "out"}).exitStatus, 1);
  EXPECT_EQ(Kvpk(folder, {"export", "a.img", "a.dff", "./a.img"}).exitStatus, 2);
  EXPECT_EQ(folder.Read("a.img"), bytes);
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"a.img", "new.dff"}));

  const KvpkRun run = Kvpk(folder, {"remove", "a.img", "a.dff", "nope", "c.dff"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_THAT(run.errors, HasSubstr("\"nope\""));
  EXPECT_EQ(EntriesOf(folder, "a.img").size(), 1U) << "the other names are removed all the same";
}

TEST(Cipher, TwiceGivesTheInputBack) {
  const TempFolder folder;
  const std::string plain = "[Info]\r\nTitle=\xC4\r\n" + std::string(40000, 'z');
  folder.Write("plain", plain);
  for (const std::vector<std::string>& pass :
       {std::vector<std::string>{}, {"--pass", "gr\xC3\xBCn"}, {"--pass", std::string(64, 'x')}}) {
    std::vector<std::string> there{"cipher", "plain", "ciphered"};
    std::vector<std::string> back{"cipher", "ciphered", "again"};
    there.insert(there.end(), pass.begin(), pass.end());
    back.insert(back.end(), pass.begin(), pass.end());
    EXPECT_EQ(Kvpk(folder, there).exitStatus, 0);
    EXPECT_EQ(Kvpk(folder, back).exitStatus, 0);
    EXPECT_NE(folder.Read("ciphered"), plain);
    EXPECT_EQ(folder.Read("again"), plain);
  }
}

}  // namespace
