#pragma once

#include <string>
#include <vector>

namespace Posix {

/// A program to be started on its own.
struct Launch {
  std::string program;                 // sought in PATH
  std::vector<std::string> arguments;  // behind the program's name
  std::string folder;                  // working directory; empty: the process's own
};

/// Starts a program apart from this process: without its terminal, its streams and its signals,
/// and with nobody who waits for it. Reports nothing; a program that isn't there isn't started.
void RunDetached(const Launch& launch);

}  // namespace Posix
