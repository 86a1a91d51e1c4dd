#include "core/LinePattern.h"

#include <algorithm>

#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

constexpr std::size_t kWordBits = 64;
// Up to this length looking at every place is as quick as anything.
constexpr std::size_t kShortSegment = 8;

unsigned char Byte(char letter) {
  return static_cast<unsigned char>(letter);
}

/// The characters of a list, given what stands between its brackets behind a leading "!".
std::bitset<256> ListedCharacters(std::string_view list, std::string_view pattern) {
  std::bitset<256> listed;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const unsigned char first = Byte(list[i]);
    const bool isRange = i + 2 < list.size() && list[i + 1] == '-';
    if (!isRange) {
      listed.set(first);
      continue;
    }
    const unsigned char last = Byte(list[i + 2]);
    if (last < first) Fail("pattern \"", pattern, "\": a range of a list runs downward");
    for (unsigned int letter = first; letter <= last; ++letter) listed.set(letter);
    i += 2;
  }
  return listed;
}

}  // namespace

LinePattern::LinePattern(std::string_view pattern) : plainText_(Text::LowerCase(pattern)) {
  const std::string_view text = plainText_;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::bitset<256> accepted;
    literal_ = literal_ && std::string_view("?*#[").find(text[i]) == std::string_view::npos;
    switch (text[i]) {
      case '*':
        segments_.emplace_back();
        continue;
      case '?':
        accepted.set();
        break;
      case '#':
        for (unsigned char digit = '0'; digit <= '9'; ++digit) accepted.set(digit);
        break;
      case '[': {
        const std::size_t end = text.find(']', i + 1);
        if (end == std::string_view::npos) Fail("pattern \"", pattern, "\": a list has no end");
        std::string_view list = text.substr(i + 1, end - i - 1);
        i = end;
        if (list.empty()) continue;
        const bool inverted = list.size() > 1 && list.front() == '!';
        if (inverted) list.remove_prefix(1);
        accepted = ListedCharacters(list, pattern);
        if (inverted) accepted.flip();
        break;
      }
      default:
        accepted.set(Byte(text[i]));
    }
    segments_.back().Add(accepted);
  }
  for (std::size_t i = 1; i + 1 < segments_.size(); ++i) segments_[i].Prepare();
}

bool LinePattern::EqualsPlainText(std::string_view line) const {
  return line.size() == plainText_.size() &&
         std::equal(line.begin(), line.end(), plainText_.begin(),
                    [](char left, char right) { return Text::LowerCase(left) == right; });
}

bool LinePattern::MatchesOrEquals(std::string_view line, EventPacer& pacer) const {
  pacer.Work(1);
  return EqualsPlainText(line) || (!literal_ && Matches(line, pacer));
}

bool LinePattern::Matches(std::string_view text, EventPacer& pacer) const {
  const Segment& first = segments_.front();
  const Segment& last = segments_.back();
  pacer.Work(first.Length() + last.Length());
  if (segments_.size() == 1) return text.size() == first.Length() && first.IsAt(0, text);
  if (text.size() < first.Length() + last.Length() || !first.IsAt(0, text) ||
      !last.IsAt(text.size() - last.Length(), text)) {
    return false;
  }
  // Each of the others may take the first place that there is: that leaves the most for the next.
  std::size_t position = first.Length();
  text.remove_suffix(last.Length());
  for (std::size_t i = 1; i + 1 < segments_.size(); ++i) {
    position = segments_[i].Find(text, position, pacer);
    if (position == std::string_view::npos) return false;
    position += segments_[i].Length();
  }
  return true;
}

bool LinePattern::Segment::IsAt(std::size_t position, std::string_view text) const {
  for (const std::bitset<256>& accepted : accepted_) {
    if (!accepted[Byte(Text::LowerCase(text[position++]))]) return false;
  }
  return true;
}

void LinePattern::Segment::Prepare() {
  if (Length() <= kShortSegment) return;
  const std::size_t words = (Length() + kWordBits - 1) / kWordBits;
  takers_.assign(256 * words, 0);
  for (std::size_t byte = 0; byte < 256; ++byte) {
    const unsigned char lower = Byte(Text::LowerCase(static_cast<char>(byte)));
    for (std::size_t i = 0; i < Length(); ++i) {
      if (!accepted_[i][lower]) continue;
      takers_[byte * words + i / kWordBits] |= std::uint64_t{1} << (i % kWordBits);
    }
  }
}

std::size_t LinePattern::Segment::Find(std::string_view text, std::size_t position,
                                       EventPacer& pacer) const {
  if (Length() > kShortSegment) return FindLong(text, position, pacer);
  for (; position + Length() <= text.size(); ++position) {
    pacer.Work(Length());
    if (IsAt(position, text)) return position;
  }
  return std::string_view::npos;
}

std::size_t LinePattern::Segment::FindLong(std::string_view text, std::size_t position,
                                           EventPacer& pacer) const {
  const std::size_t words = takers_.size() / 256;
  const std::size_t last = Length() - 1;
  // A bit for each element: whether the segment up to it stands right ahead of `position`.
  std::vector<std::uint64_t> reached(words, 0);
  while (position < text.size()) {
    const std::uint64_t* const takers = &takers_[Byte(text[position++]) * words];
    for (std::size_t i = words - 1; i > 0; --i) {
      reached[i] = ((reached[i] << 1U) | (reached[i - 1] >> (kWordBits - 1))) & takers[i];
    }
    reached[0] = ((reached[0] << 1U) | 1U) & takers[0];
    if ((reached[last / kWordBits] >> (last % kWordBits) & 1U) != 0) return position - Length();
    pacer.Work(words);
  }
  return std::string_view::npos;
}
