#include "platform/Terminal.h"

#include <iostream>

#include "platform/windows/System.h"

namespace Terminal {

bool IsStandardOutput() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

bool IsStandardInput() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

std::string Ask(const std::string& question) {
  std::cerr << question << std::flush;
  std::string line;
  std::getline(std::cin, line);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace Terminal
