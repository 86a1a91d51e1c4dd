#include "platform/Terminal.h"

#include "platform/windows/System.h"

namespace Terminal {

bool IsStandardOutput() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

}  // namespace Terminal
