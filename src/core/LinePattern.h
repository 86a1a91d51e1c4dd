#pragma once

#include <bitset>
#include <string>
#include <string_view>
#include <vector>

/// The pattern language of the line commands: `?` any one character, `*` any run of characters,
/// `#` one decimal digit, `[abc]` and `[a-z]` one of a list, `[!abc]` one that isn't listed.
///
/// In a list a range runs upward, a hyphen at an edge stands for itself, `[]` matches nothing of
/// length, and `[!]` is the exclamation mark. Pattern and text are compared whole and in lower
/// case (letters of Windows-1252).
class LinePattern {
 public:
  /// Fails on a malformed pattern: a list without its end, a range that runs downward.
  explicit LinePattern(std::string_view pattern);

  /// Whether the pattern matches `line`, or `line` equals the pattern as plain text.
  [[nodiscard]] bool MatchesOrEquals(std::string_view line) const;
  /// Whether the pattern matches `text`.
  [[nodiscard]] bool Matches(std::string_view text) const;

 private:
  struct Element {
    bool run;                   // `*`; otherwise exactly one character out of `accepted`
    std::bitset<256> accepted;  // by the lower-case byte
  };
  [[nodiscard]] bool EqualsPlainText(std::string_view line) const;

  std::string plainText_;  // the pattern as written, in lower case
  bool literal_ = true;    // no element but characters that stand for themselves
  std::vector<Element> elements_;
};
