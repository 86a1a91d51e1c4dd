#pragma once

#include <cstdlib>

/// Sets a variable of the process's environment; null removes it.
inline void SetVariable(const char* name, const char* value) {
  if (value != nullptr) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
}
