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
    std::string text;
    bool matches;
  };
  const std::vector<Case> cases = {
      {"", "", true},
      {"", "a", false},
      {"abc", "abc", true},
      {"abc", "abcd", false},
      {"abcd", "abc", false},
      {"bc", "abc", false},  // whole strings only
      {"ABC", "aBc", true},
      {"L\xD6S*", "l\xF6schen", true},
      {"\xD7", "\xF7", false},
      {"a?c", "abc", true},
      {"a?c", "ac", false},
      {"?", "\0"s, true},
      {"a#c", "a7c", true},
      {"a#c", "axc", false},
      {"#", "\xB2", false},
      {"*", "", true},
      {"a*", "a", true},
      {"*a", "bbba", true},
      {"*ab", "aab", true},
      {"a**b*", "axxbyy", true},
      {"*a*b*c", "xaxbxcx", false},
      {"a*b", "ab\nb", true},
      {"[abc]x", "bx", true},
      {"[abc]x", "dx", false},
      {"[abc]", "", false},
      {"[a-c]", "B", true},
      {"[A-C]", "b", true},
      {"[a-c]", "d", false},
      {"[0-9A-F]", "e", true},
      {"[0-9A-F]", "-", false},
      {"[!abc]", "d", true},
      {"[!ABC]", "b", false},
      {"[!abc]", "", false},
      {"[!a-c]", "b", false},
      {"[\xE0-\xFE]", "\xC4", true},
      {"[-a]", "-", true},  // a hyphen at an edge is itself
      {"[a-]", "-", true},
      {"[!-a]", "-", false},
      {"[!-a]", "b", true},
      {"[-]", "-", true},
      {"[a-a]", "a", true},
      {"a[]b", "ab", true},  // an empty list matches nothing of length
      {"[]", "", true},
      {"[]", "a", false},
      {"[!]", "!", true},  // the exclamation mark itself
      {"[!]", "a", false},
      {"[!!]", "!", false},
      {"[a!]", "!", true},
      {"[*]", "*", true},  // signs in a list stand for themselves
      {"[*]", "x", false},
      {"[?#]", "#", true},
      {"[[]", "[", true},
      {"]", "]", true},
      {"a]", "a]", true},
      {"*[0-9]", "abc7", true},
      {"*[0-9]", "abc7x", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(LinePattern(c.pattern).Matches(c.text), c.matches) << c.pattern << " on " << c.text;
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
