#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Text.h"

using namespace std::string_literals;

namespace {

std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

TEST(Text, EveryByteSurvivesTheWayThroughUtf8) {
  const std::string utf8 = Text::ToUtf8(AllBytes());
  EXPECT_EQ(Text::FromUtf8(utf8), AllBytes());
  EXPECT_EQ(Text::ToUtf8("\x80\x81\x8E\x99\x9D\x9F\xA0\xC4\xFF"),
            "\u20AC\u0081\u017D\u2122\u009D\u0178\u00A0\u00C4\u00FF");
  EXPECT_EQ(Text::ToUtf16("A\x80\x81\xC4"), u"A\u20AC\u0081\u00C4");
}

TEST(Text, FromUtf8RefusesWhatIsMalformedOrUnknown) {
  const std::vector<std::string> bad = {
      "a\xC3",         // cut short
      "\xC3\x28",      // no continuation
      "\xC1\x81",      // two bytes for one
      "\xE0\x83\x84",  // three bytes for two
      "\xED\xA0\x80",  // half of a pair
      "\xFF",
      "\u0080",       // a control character whose byte means the euro sign
      "\u0100",       // a letter that the code page lacks
      "a\u0308",      // a with a separate diaeresis
      "\U0001F600"};  // four bytes
  for (const std::string& utf8 : bad) EXPECT_EQ(Text::FromUtf8(utf8), std::nullopt) << utf8;
  EXPECT_EQ(Text::FromDecomposedUtf8("A\u0308pfel, c\u0327a, s\u030C"),
            "\xC4pfel, \xE7"
            "a, \x9A");
  EXPECT_EQ(Text::FromDecomposedUtf8("x\u0308"), std::nullopt);
  EXPECT_EQ(Text::FromDecomposedUtf8("\u0308"), std::nullopt);
  const std::vector<std::pair<const char*, const char*>> aliases = {
      {"\u0418\u0433 \u00E4\u0440", "{u418.433} \xE4{u440}"},
      {"o\u0308\U0001F600", "o{u308.1f600}"},
      {"{u41}", "{u41}"}};
  for (const auto& [utf8, alias] : aliases) {
    EXPECT_EQ(Text::AliasOf(utf8), alias);
    EXPECT_EQ(Text::FromAlias(alias).value_or(alias), utf8);
  }
  EXPECT_EQ(Text::FromAlias("{U1F600}"), "\U0001F600");
  for (const char* text : {"{u41}", "{u}", "{u418", "{u418.}", "{u.418}", "{ud800}", "{u110000}",
                           "{u-418}", "{ux}", "{u418,433}", "plain"})
    EXPECT_EQ(Text::FromAlias(text), std::nullopt) << text;
  EXPECT_EQ(Text::FromUtf8Lossy("a\U0001F600\xC3z"), "a??z")
      << "one for a character, or a bad byte";
}

TEST(Text, LowerCaseKnowsTheLettersOfTheCodePage) {
  EXPECT_EQ(Text::LowerCase("AZ@[\xC0\xC4\xD6\xDC\xDE\x8A\x8C\x8E\x9F"),
            "az@[\xE0\xE4\xF6\xFC\xFE\x9A\x9C\x9E\xFF");
  // No letters: the multiplication and division signs, sharp s, and the rest of the specials.
  EXPECT_EQ(Text::LowerCase("\xD7\xF7\xDF\x80\x8B\x8D\x8F\x99"),
            "\xD7\xF7\xDF\x80\x8B\x8D\x8F\x99");
  EXPECT_TRUE(Text::EqualsIgnoringCase("L\xD6SCHE", "l\xF6sche"));
  EXPECT_FALSE(Text::EqualsIgnoringCase("ab", "abc"));
}

TEST(Text, WholeNumberTakesDecimalNumbersOnly) {
  const std::vector<std::pair<const char*, std::optional<std::int32_t>>> cases = {
      {"0", 0},
      {"+7", 7},
      {"-7", -7},
      {"2147483647", 2147483647},
      {"-2147483648", -2147483647 - 1},
      {"2147483648", std::nullopt}};
  for (const auto& [text, number] : cases) EXPECT_EQ(Text::WholeNumber(text), number) << text;
  for (const char* text : {" ", "+", "- 1", "1.0", "\t1", "&H1"})
    EXPECT_EQ(Text::WholeNumber(text), std::nullopt) << text;
}

}  // namespace
