#pragma once

#include <string>
#include <string_view>

#include "platform/Failure.h"

/// A failure of the socket layer: a number of the socket service or one of the layer's own, the
/// operation that failed, and the number's text.
class SocketError : public Failure {
 public:
  SocketError(int number, std::string source, std::string description);

  [[nodiscard]] const std::string& Source() const { return source_; }
  [[nodiscard]] const std::string& Description() const { return description_; }

 private:
  std::string source_;
  std::string description_;
};

/// Throws a `SocketError` with the number's text out of the table.
[[noreturn]] void FailSocket(int number, std::string_view source);

/// Runs `body`; what of it fails is thrown again with `source` as its source.
template <typename Body>
auto FailingAs(std::string_view source, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (const SocketError& error) {
    throw SocketError(error.Number(), std::string(source), error.Description());
  }
}
