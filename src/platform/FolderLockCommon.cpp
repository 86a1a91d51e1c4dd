#include <algorithm>
#include <utility>

#include "platform/Failure.h"
#include "platform/FolderLock.h"
#include "platform/Text.h"

FolderLock::FolderLock(FolderLock&& other) noexcept {
  *this = std::move(other);
}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(state_, other.state_);
  std::swap(holder_, other.holder_);
  std::swap(wasLeft_, other.wasLeft_);
  return *this;
}

std::string FolderLock::TextOf(std::string_view program, std::int64_t process) {
  return Concat(program, ' ', process, '\n');
}

FolderLock::Holder FolderLock::HolderIn(std::string_view text) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos || !text.ends_with('\n')) return {};
  const std::string_view program = text.substr(0, blank);
  text.remove_suffix(1);
  const auto process = Text::WholeNumber(text.substr(blank + 1));
  // Anybody may have written it, and people are going to read it.
  const bool isWord = std::all_of(program.begin(), program.end(), [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  });
  return isWord && process ? Holder{std::string(program), *process} : Holder();
}
