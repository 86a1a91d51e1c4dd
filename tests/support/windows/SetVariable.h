#pragma once

#include <cstdlib>

/// Sets a variable of the process's environment; null removes it.
inline void SetVariable(const char* name, const char* value) {
  _putenv_s(name, value != nullptr ? value : "");
}
