#pragma once

#include <cerrno>
#include <sstream>
#include <stdexcept>
#include <string>

/// The one exception of the program: what failed, on what, and with which number.
///
/// The text is engine text (Windows-1252 bytes, one line, no full stop); whoever shows it turns
/// it into the encoding of its output. `Number` is the operating system's error number, or 0
/// where the failure isn't the system's.
class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& text, int number = 0)
      : std::runtime_error(text), number_(number) {}

  [[nodiscard]] int Number() const { return number_; }

 private:
  int number_;
};

/// All parts written one after the other, numbers in decimal.
template <typename... Parts>
std::string Concat(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  return text.str();
}

/// Throws a `Failure` whose text is all parts written one after the other.
template <typename... Parts>
[[noreturn]] void Fail(const Parts&... parts) {
  throw Failure(Concat(parts...));
}
