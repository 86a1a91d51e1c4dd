#include "core/LinePattern.h"

#include <algorithm>

#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

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
    Element element{false, {}};
    switch (text[i]) {
      case '?':
        element.accepted.set();
        break;
      case '*':
        element.run = true;
        break;
      case '#':
        for (unsigned char digit = '0'; digit <= '9'; ++digit) element.accepted.set(digit);
        break;
      case '[': {
        const std::size_t end = text.find(']', i + 1);
        if (end == std::string_view::npos) Fail("pattern \"", pattern, "\": a list has no end");
        std::string_view list = text.substr(i + 1, end - i - 1);
        i = end;
        literal_ = false;
        if (list.empty()) continue;
        const bool inverted = list.size() > 1 && list.front() == '!';
        if (inverted) list.remove_prefix(1);
        element.accepted = ListedCharacters(list, pattern);
        if (inverted) element.accepted.flip();
        elements_.push_back(element);
        continue;
      }
      default:
        element.accepted.set(Byte(text[i]));
        elements_.push_back(element);
        continue;
    }
    literal_ = false;
    elements_.push_back(element);
  }
}

bool LinePattern::EqualsPlainText(std::string_view line) const {
  return line.size() == plainText_.size() &&
         std::equal(line.begin(), line.end(), plainText_.begin(),
                    [](char left, char right) { return Text::LowerCase(left) == right; });
}

bool LinePattern::MatchesOrEquals(std::string_view line) const {
  return EqualsPlainText(line) || (!literal_ && Matches(line));
}

bool LinePattern::Matches(std::string_view text) const {
  // Walks both; on a mismatch it goes back to the last `*` alone and lets that take one character
  // more, so the work is bounded by the product of the lengths.
  std::size_t element = 0;
  std::size_t position = 0;
  std::size_t runElement = elements_.size();  // the last `*` met; none yet
  std::size_t runPosition = 0;
  while (position < text.size()) {
    if (element < elements_.size() && elements_[element].run) {
      runElement = element++;
      runPosition = position;
    } else if (element < elements_.size() &&
               elements_[element].accepted[Byte(Text::LowerCase(text[position]))]) {
      ++element;
      ++position;
    } else if (runElement < elements_.size()) {
      element = runElement + 1;
      position = ++runPosition;
    } else {
      return false;
    }
  }
  return std::all_of(elements_.begin() + static_cast<std::ptrdiff_t>(element), elements_.end(),
                     [](const Element& rest) { return rest.run; });
}
