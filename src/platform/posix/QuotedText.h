#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/System.h"

/// What the text files of other programs have in common that the program looks into: lines, and
/// texts between quotes in which a backslash begins an escape, as in C.
namespace Posix {

/// The lines of a file, in blocks; of an overlong line nothing is given but its beginning. A file
/// that can't be read has none.
class LineReader {
 public:
  explicit LineReader(const std::string& native);
  bool Next(std::string& line);

 private:
  bool Fill();

  Descriptor file_;
  std::string block_;
  std::size_t start_ = 0;
  std::size_t end_ = 0;
};

/// Takes an escaped text and the `end` behind it off the front of `rest`, as UTF-8; nothing if the
/// end is missing.
std::optional<std::string> TakeText(std::string_view& rest, char end);

/// A text between quotes at the front of `rest`.
std::optional<std::string> TakeQuoted(std::string_view& rest);

}  // namespace Posix
