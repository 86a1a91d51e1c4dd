#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "SetVariable.h"

/// Sets an environment variable for the time of one test.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::string& value) : name_(name) {
    const char* const before = std::getenv(name);
    if (before != nullptr) before_ = before;
    SetVariable(name, value.c_str());
  }
  EnvironmentVariable(EnvironmentVariable&&) = delete;
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(EnvironmentVariable&&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { SetVariable(name_, before_ ? before_->c_str() : nullptr); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};
