#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/DosPath.h"

namespace {

TEST(DosPath, CollapseTakesPairsFromLeftToRight) {
  EXPECT_EQ(DosPath::Collapse(R"(a\\b)"), R"(a\b)");
  EXPECT_EQ(DosPath::Collapse(R"(a\\\b)"), R"(a\\b)");
  EXPECT_EQ(DosPath::Collapse(R"(\\\\a)"), R"(\\a)");
  EXPECT_EQ(DosPath::Join(R"(C:\Games\)", "x.txt"), R"(C:\Games\x.txt)");
  EXPECT_EQ(DosPath::Join("C:", R"(\x)"), R"(C:\x)");
}

TEST(DosPath, PlainFileNames) {
  for (const char* name : {"a", "a.txt", " a", "a.", "..a", "\xC4.dff", "console", "com10", "com0",
                           "xcon", "con_.txt", "a;b", "com"})
    EXPECT_TRUE(DosPath::IsPlainFileName(name)) << name;
  for (const char* name :
       {"",    ".",       "..",   "...",      ". .",  " ",        "a\\b",  "a/b",     "C:a",
        "a*",  "a?",      "a\"",  "a<",       "a>",   "a|",       "a\x1F", "a\n",     "con",
        "NUL", "Nul.txt", "com1", "LPT9.a.b", "aux ", "con .txt", "PRN.",  "COM\xB2", "CONIN$"})
    EXPECT_FALSE(DosPath::IsPlainFileName(name)) << name;
}

TEST(DosPath, WildcardsMatchAsDosHasThem) {
  struct Case {
    const char* pattern;
    std::vector<const char*> matching;
    std::vector<const char*> others;
  };
  const std::vector<Case> cases = {
      {"*.*", {"a", "a.txt", "a.b.c", ".a", "a."}, {}},
      {"*.", {"a", "abc"}, {"a.txt", ".a"}},
      {"*.txt", {"a.txt", "A.TXT", "a.b.txt", ".txt"}, {"a", "txt", "a.txt2", "a.txt.b"}},
      {"a.*", {"a", "a.b", "A.b.c"}, {"ab", "ab.c"}},
      {"?", {"a", "\xC4"}, {"ab", "a.b"}},
      {"a??", {"a", "ab", "abc"}, {"abcd", "b", "a.b"}},
      {"*\xE4*", {"x\xC4x"}, {"xax"}},
      {"a.txt", {"A.TXT"}, {"a.tx", "a.txt."}}};
  for (const auto& [pattern, matching, others] : cases) {
    for (const char* name : matching)
      EXPECT_TRUE(DosPath::MatchesWildcards(name, pattern)) << name << " by " << pattern;
    for (const char* name : others)
      EXPECT_FALSE(DosPath::MatchesWildcards(name, pattern)) << name << " by " << pattern;
  }
}

TEST(DosPath, AHostilePatternTakesNoLongerThanItsLength) {
  std::string pattern;
  for (int i = 0; i < 2000; ++i) pattern += "*a";
  EXPECT_FALSE(DosPath::MatchesWildcards(std::string(255, 'a'), pattern + "b"));
}

}  // namespace
