#include "platform/Terminal.h"

#include <iostream>

#include <poll.h>
#include <unistd.h>

namespace Terminal {

bool IsStandardOutput() {
  return isatty(STDOUT_FILENO) == 1;
}

bool IsStandardInput() {
  return isatty(STDIN_FILENO) == 1;
}

std::string Ask(const std::string& question) {
  std::cerr << question << std::flush;
  // Unlike a read, this isn't taken up again behind a signal that is only noted.
  struct pollfd input = {STDIN_FILENO, POLLIN, 0};
  std::string line;
  if (poll(&input, 1, -1) == 1) std::getline(std::cin, line);
  return line;
}

}  // namespace Terminal
