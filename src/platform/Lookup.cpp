#include "platform/Lookup.h"

#include <algorithm>
#include <utility>

#include "platform/DosPath.h"
#include "platform/FolderLock.h"
#include "platform/Text.h"

namespace Lookup {

void PathParts::AddNames(std::string_view text) {
  while (!text.empty()) {
    const std::string_view name = NextName(text);
    if (name == ".." && names.empty())
      ++up;
    else if (name == "..")
      names.pop_back();
    else if (!name.empty() && name != ".")
      names.emplace_back(name);
  }
}

bool PathParts::EndsInPattern() const {
  return valid && !endsInSeparator && !names.empty() && DosPath::HasWildcards(names.back());
}

std::string PathParts::TakeLast() {
  std::string last = std::move(names.back());
  names.pop_back();
  endsInSeparator = false;
  return last;
}

bool IsDriveLetter(char letter) {
  const char lower = Text::LowerCase(letter);
  return lower >= 'a' && lower <= 'z';
}

bool IsSeparator(char letter) {
  return letter == '\\' || letter == '/';
}

std::string_view NextName(std::string_view& rest) {
  const std::string_view name = rest.substr(0, rest.find_first_of("\\/"));
  rest.remove_prefix(std::min(rest.size(), name.size() + 1));
  return name;
}

std::string_view WithoutTrailingDots(std::string_view name) {
  return name.substr(0, name.find_last_not_of(". ") + 1);
}

bool IsLockFile(std::string_view name) {
  return Text::EqualsIgnoringCase(WithoutTrailingDots(name), FolderLock::kFileName);
}

bool ComesBefore(const std::string& left, const std::string& right) {
  const std::string leftLower = Text::LowerCase(left);
  const std::string rightLower = Text::LowerCase(right);
  return leftLower != rightLower ? leftLower < rightLower : left < right;
}

}  // namespace Lookup
