#include <random>
#include <string>
#include <string_view>
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
    EventPacer pacer;
    const LinePattern pattern(c.pattern);
    for (const std::string& text : c.matching)
      EXPECT_TRUE(pattern.Matches(text, pacer)) << c.pattern << " on " << text;
    for (const std::string& text : c.others)
      EXPECT_FALSE(pattern.Matches(text, pacer)) << c.pattern << " on " << text;
  }
}

TEST(LinePattern, MalformedPatternsFail) {
  for (const char* bad : {"[", "a[b", "[!", "[a-", "x]y[", "[c-a]", "[9-0]", "[!z-a]", "[Z-_]"})
    EXPECT_THROW(LinePattern{bad}, Failure) << bad;
}

/// The definition, as short as it can be said. `pattern` is well formed, without ranges.
bool MatchesByDefinition(std::string_view pattern, std::string_view text) {
  if (pattern.empty()) return text.empty();
  const std::string_view rest = pattern.substr(1);
  if (pattern[0] == '*') {
    return MatchesByDefinition(rest, text) ||
           (!text.empty() && MatchesByDefinition(pattern, text.substr(1)));
  }
  if (pattern[0] == '[') {
    const std::string_view list = rest.substr(0, rest.find(']'));
    const std::string_view behind = rest.substr(list.size() + 1);
    if (list.empty()) return MatchesByDefinition(behind, text);
    const bool inverted = list.size() > 1 && list[0] == '!';
    return !text.empty() &&
           (list.substr(inverted ? 1 : 0).find(text[0]) != std::string_view::npos) != inverted &&
           MatchesByDefinition(behind, text.substr(1));
  }
  return !text.empty() && (pattern[0] == '?' || pattern[0] == text[0]) &&
         MatchesByDefinition(rest, text.substr(1));
}

TEST(LinePattern, MatchesAsDefined) {
  const std::vector<std::string> parts = {"a",   "a",    "b",    "?",     "*",  "*",
                                          "[!]", "[-a]", "[a-]", "[!ab]", "[]", "aaababbaab"};
  std::mt19937 random(10);
  EventPacer pacer;
  int matching = 0;
  for (int round = 0; round < 1000; ++round) {
    std::string pattern;
    std::string text;
    for (std::size_t i = random() % 7; i > 0; --i) pattern += parts[random() % parts.size()];
    // Long segments are found in another way than short ones, and ones of several words too.
    if (round % 8 == 0) pattern = "*" + std::string(random() % 80, 'a') + pattern + "b*";
    for (std::size_t i = random() % 6; i > 0; --i)
      text += round % 8 == 0 ? std::string(random() % 50, 'a') : parts[random() % 3] + "-!";
    if (round % 4 == 1) text = pattern;
    const bool expected = MatchesByDefinition(pattern, text);
    ASSERT_EQ(LinePattern(pattern).Matches(text, pacer), expected) << pattern << " on " << text;
    matching += expected ? 1 : 0;
  }
  EXPECT_GT(matching, 50);
}

TEST(LinePattern, LongPatternsOnALongLineTakeLittleAndLetEventsRun) {
  const std::string line(1 << 20, 'a');
  std::string runs;
  for (int i = 0; i < 20000; ++i) runs += "*a";
  int events = 0;
  EventPacer pacer([&] { ++events; });
  for (const std::string& pattern :
       {"*" + std::string(30000, '?') + "b", "*" + std::string(50000, 'a') + "b", runs + "*b"})
    EXPECT_FALSE(LinePattern(pattern).Matches(line, pacer));
  EXPECT_EQ(events, 0);
  EXPECT_FALSE(LinePattern("*" + std::string(50000, 'a') + "b*").Matches(line, pacer));
  EXPECT_GT(events, 20);
  EXPECT_TRUE(LinePattern(runs + "*").Matches(line, pacer));
}

}  // namespace
