#include "platform/Terminal.h"

#include <iostream>

#include <poll.h>
#include <unistd.h>

#include "platform/Process.h"

namespace Terminal {

bool IsStandardOutput() {
  return isatty(STDOUT_FILENO) == 1;
}

bool IsStandardInput() {
  return isatty(STDIN_FILENO) == 1;
}

std::string Ask(const std::string& question) {
  std::cerr << question << std::flush;
  // A read would be taken up again behind a signal that is only noted.
  constexpr int kBetweenLooks = 100;  // milliseconds
  struct pollfd input = {STDIN_FILENO, POLLIN, 0};
  while (Process::StopRequested() == 0 && poll(&input, 1, kBetweenLooks) != 1) continue;
  std::string line;
  if (Process::StopRequested() == 0) std::getline(std::cin, line);
  return line;
}

}  // namespace Terminal
