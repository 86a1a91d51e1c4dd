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

TEST(DosPath, AbsoluteIsAColonAndABackslashAnywhere) {
  for (const char* path : {"C:", R"(C:\)", R"(C:\\x)", R"(data\C:\x)", "ab:", R"(:\)"})
    EXPECT_TRUE(DosPath::IsAbsolute(path)) << path;
  for (const char* path : {"", "x", R"(\x)", "C:x", "C:/x", R"(data\x)"})
    EXPECT_FALSE(DosPath::IsAbsolute(path)) << path;
  EXPECT_TRUE(DosPath::IsFullPath(R"(C:\)"));
  EXPECT_FALSE(DosPath::IsFullPath("C:"));
  EXPECT_FALSE(DosPath::IsFullPath(R"(CC:\)"));
  EXPECT_EQ(DosPath::FolderPart(R"(C:\a\b.txt)"), R"(C:\a\)");
  EXPECT_EQ(DosPath::FolderPart("b.txt"), "");
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
      {"*", {"a", "a.txt", ".a"}, {}},
      {"*.", {"a", "abc"}, {"a.txt", ".a"}},
      {"a*.", {"a", "abc"}, {"a.txt", "b"}},
      {"*.txt", {"a.txt", "A.TXT", "a.b.txt", ".txt"}, {"a", "txt", "a.txt2", "a.txt.b"}},
      {"*.b*", {"a.b", "a.bc", "a.b.c"}, {"a.c", "b"}},
      {"a.*", {"a", "a.b", "A.b.c"}, {"ab", "ab.c"}},
      {"?", {"a", "\xC4"}, {"ab", "a.b"}},
      {"a??", {"a", "ab", "abc"}, {"abcd", "b", "a.b"}},
      {"a?.t?", {"a.t", "ab.t", "ab.tx"}, {"a", "abc.t", "ab.txt"}},
      {"?b", {"ab"}, {"b", ".b"}},
      {"???.???", {"a", "abc.def", "a.b"}, {"abcd.e", "a.b.c"}},
      {"*a*b*", {"ab", "xaxbx"}, {"ba", "a"}},
      {"*\xE4*", {"x\xC4x"}, {"xax"}},
      {"a.txt", {"A.TXT"}, {"a.tx", "a.txt."}},
      {"*.txt ", {"a.txt"}, {"a"}}};
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
