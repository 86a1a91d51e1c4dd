#include "platform/Terminal.h"

#include <unistd.h>

namespace Terminal {

bool IsStandardOutput() {
  return isatty(STDOUT_FILENO) == 1;
}

}  // namespace Terminal
