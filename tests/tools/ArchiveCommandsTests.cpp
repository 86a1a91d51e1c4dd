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
  folder.Write("lying.img", std::string("VER2\xFF\xFF\xFF\x7F", 8) + std::string(4000, '\0'));
  WriteArchive(folder, "good.img", {{"a", "1"}});
  const std::vector<std::pair<std::vector<std::string>, int>> cases{
      {{"list", "good.img"}, 0},
      {{"list", "missing"}, 1},
      {{"rebuild", "missing"}, 1},
      {{"--help"}, 0},
      {{}, 2},
      {{"list", "good.img", "more"}, 2},
      {{"list", "text"}, 1},
      {{"list", "lying.img"}, 1},
      {{"add", "good.img"}, 2},
      {{"cipher", "text", "out", "--pass", ""}, 2},
      {{"cipher", "text", "out", "--pass", "\xE6\x97\xA5"}, 2},
      {{"cipher", "text", "./text"}, 2},
      {{"cipher", "missing", "out"}, 1},
      {{"script", "text"}, 2},
      {{"install", "good.img", "--game", "."}, 1},
      {{"unpack", "good.img", "folder"}, 1},
  };
  for (const auto& [arguments, exitStatus] : cases) {
    const KvpkRun run = Kvpk(folder, arguments);
    EXPECT_EQ(run.exitStatus, exitStatus) << testing::PrintToString(arguments);
    if (exitStatus != 1) continue;
    EXPECT_THAT(run.errors, StartsWith("kvpk: "));
    EXPECT_EQ(LinesIn(run.errors), 1U) << run.errors;
  }
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"good.img", "lying.img", "text"}));
}

TEST(List, GivesTheDirectoryAsJsonInOrder) {
  const TempFolder folder;
  WriteArchive(folder, "a.img",
               {{"Gr\xFC\xDF.dff", std::string(2049, 'x')},
                {"\x1B\x81", ""},
                {"name-of-24-characters.tx", "y"}});
  const KvpkRun run = Kvpk(folder, {"list", "a.img", "--json"});
  EXPECT_EQ(ordered_json::parse(run.output).dump(),
            R"({"entryCount":3,"nextEntryPos":105,"lowestOffset":2048,"lowestEntryPos":9,)"
            R"("entries":[{"name":"Grüß.dff","offset":2048,"size":4096},)"
            "{\"name\":\"\\u001b\xC2\x81\",\"offset\":6144,\"size\":0},"
            R"({"name":"name-of-24-characters.tx","offset":6144,"size":2048}]})");
  const KvpkRun plain = Kvpk(folder, {"list", "a.img"});
  EXPECT_EQ(plain.output.find('\x1B'), std::string::npos) << "a name must not steer the terminal";
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
  EXPECT_EQ(Kvpk(folder, {"export", "a.img", "second.dff", "out"}).exitStatus, 0);
  EXPECT_EQ(folder.Read("out"), "second" + std::string(2042, '\0'));
  const auto entries = EntriesByName(folder, "a.img");
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
  EXPECT_EQ(EntriesByName(folder, "a.img").size(), 1U)
      << "the other names are removed all the same";
}

TEST(Cipher, TakesThePassPhraseOfTheIndexOrAnother) {
  const TempFolder folder;
  const std::string index = "[Info]\r\nTitle=\xC4\r\n" + std::string(40000, 'z');
  WritePack(folder, "a.kvpk", index);
  folder.Write("plain", index);
  EXPECT_EQ(Kvpk(folder, {"cipher", "plain", "out"}).exitStatus, 0);
  EXPECT_TRUE(EntriesByName(folder, "a.kvpk").at("modpack.ini").starts_with(folder.Read("out")));
  EXPECT_EQ(Kvpk(folder, {"cipher", "out", "plain", "--pass", "A"}).exitStatus, 0);
  EXPECT_EQ(folder.Read("plain")[0] ^ folder.Read("out")[0], 'A');
}

}  // namespace
