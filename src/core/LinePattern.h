#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/EventPacer.h"

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
  bool MatchesOrEquals(std::string_view line, EventPacer& pacer) const;
  /// Whether the pattern matches `text`. Takes time by the length of the text, and for each 64
  /// elements between two `*`.
  bool Matches(std::string_view text, EventPacer& pacer) const;

 private:
  /// What stands between two `*`: elements that each take exactly one character.
  class Segment {
   public:
    void Add(const std::bitset<256>& accepted) { accepted_.push_back(accepted); }
    [[nodiscard]] std::size_t Length() const { return accepted_.size(); }
    [[nodiscard]] bool IsAt(std::size_t position, std::string_view text) const;
    /// Makes ready for `Find`.
    void Prepare();
    /// The first place in `text` from `position` on where the segment stands, or npos.
    std::size_t Find(std::string_view text, std::size_t position, EventPacer& pacer) const;

   private:
    std::size_t FindLong(std::string_view text, std::size_t position, EventPacer& pacer) const;

    std::vector<std::bitset<256>> accepted_;  // by the lower-case byte
    /// For each byte, lower-case or not, a bit for each element: whether it takes the byte.
    std::vector<std::uint64_t> takers_;
  };
  [[nodiscard]] bool EqualsPlainText(std::string_view line) const;

  std::string plainText_;  // the pattern as written, in lower case
  bool literal_ = true;    // no element but characters that stand for themselves
  /// One more than there are `*`. The first is bound to the text's start, the last to its end.
  std::vector<Segment> segments_{1};
};
