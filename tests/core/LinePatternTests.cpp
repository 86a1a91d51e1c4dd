#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/LinePattern.h"
#include "platform/Failure.h"

using namespace std::string_literals;

namespace {

TEST(LinePattern, Matches) {
  struct Case {
    std::string pattern;
    std::vector<std::string> matching;
    std::vector<std::string> others;
  };
  const std::vector<Case> cases = {
      {"", {""}, {"a"}},
      {"aBc", {"abc", "ABC"}, {"ab", "abcd", "xabc"}},  // whole strings only
      {"L\xD6S*", {"l\xF6s", "L\xF6schen"}, {"los"}},
      {"a?c", {"abc", "a\0c"s, "a?c"}, {"ac", "abbc"}},
      {"a#c", {"a7c", "a0c"}, {"axc", "a\xB2\x63", "a#c"}},
      {"*", {"", "a\nb"}, {}},
      {"*ab", {"ab", "aab", "abab"}, {"abx", "b"}},
      {"[abc]x", {"bx", "Cx"}, {"dx", "x", "abcx"}},
      {"[!a-c]", {"d", "-"}, {"B"}},
      {"[\xE0-\xFE]", {"\xC4"}, {"a"}},
      {"[-a]", {"-", "a"}, {"b"}},       // a hyphen at an edge is itself
      {"a[]b", {"ab"}, {"a]b", "axb"}},  // an empty list matches nothing of length
      {"[!]", {"!"}, {"a", ""}},         // the exclamation mark itself
      {"[a!]", {"!", "a"}, {"b"}},
      {"[*?#[]", {"*", "?", "#", "["}, {"x", "1"}},  // signs in a list stand for themselves
  };
  for (const Case& c : cases) {
    const LinePattern pattern(c.pattern);
    for (const std::string& text : c.matching)
      EXPECT_TRUE(pattern.Matches(text)) << c.pattern << " on " << text;
    for (const std::string& text : c.others)
      EXPECT_FALSE(pattern.Matches(text)) << c.pattern << " on " << text;
  }
}

TEST(LinePattern, ALineEqualsItsOwnTextWhateverSignsItHolds) {
  for (const char* text : {"[abc]", "a#b", "x [!y] * ?", "[!]", "plain"}) {
    EXPECT_TRUE(LinePattern(text).MatchesOrEquals(text));
    EXPECT_FALSE(LinePattern(text).MatchesOrEquals(std::string(text) + "\x01"));
  }
  EXPECT_FALSE(LinePattern("[abc]").Matches("[abc]"));
  EXPECT_TRUE(LinePattern("[ABC]").MatchesOrEquals("[abC]"));
  EXPECT_TRUE(LinePattern("[abc]").MatchesOrEquals("b"));
}

TEST(LinePattern, MalformedPatternsFail) {
  for (const char* bad : {"[", "a[b", "[!", "[a-", "x]y[", "[c-a]", "[9-0]", "[!z-a]", "[Z-_]"})
    EXPECT_THROW(LinePattern{bad}, Failure) << bad;
}

TEST(LinePattern, ManyRunsDoNotMultiply) {
  std::string pattern;
  for (int i = 0; i < 2000; ++i) pattern += "*a";
  EXPECT_FALSE(LinePattern(pattern + "*b").Matches(std::string(20000, 'a')));
  EXPECT_TRUE(LinePattern(pattern + "*").Matches(std::string(20000, 'a')));
}

}  // namespace
