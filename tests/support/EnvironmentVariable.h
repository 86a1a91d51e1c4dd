#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// Sets an environment variable for the time of one test.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::string& value) : name_(name) {
    const char* const before = std::getenv(name);
    if (before != nullptr) before_ = before;
    setenv(name, value.c_str(), 1);
  }
  EnvironmentVariable(EnvironmentVariable&&) = delete;
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(EnvironmentVariable&&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() {
    if (before_)
      setenv(name_, before_->c_str(), 1);
    else
      unsetenv(name_);
  }

 private:
  const char* name_;
  std::optional<std::string> before_;
};
