#include "platform/posix/Detached.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <fcntl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/System.h"

namespace {

std::vector<std::string> PlacesOf(const std::string& program) {
  std::string path = Posix::Environment("PATH");
  if (path.empty()) path = "/usr/local/bin:/usr/bin:/bin";
  std::vector<std::string> places;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find(':', start), path.size());
    const std::string folder = path.substr(start, end - start);
    places.push_back((folder.empty() ? "." : folder) + "/" + program);
    start = end + 1;
  }
  return places;
}

// All that the new process needs, made ready before the fork: after it only calls that a signal
// handler may make are safe.
struct Prepared {
  explicit Prepared(const Posix::Launch& launch)
      : folder(launch.folder), places(PlacesOf(launch.program)) {
    // execve takes what it doesn't change as changeable.
    arguments.push_back(const_cast<char*>(launch.program.c_str()));
    for (const std::string& argument : launch.arguments)
      arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
  }

  const std::string& folder;
  std::vector<std::string> places;  // where the program may be, in order
  std::vector<char*> arguments;
};

void LeaveTerminal() {
  setsid();
  const int null = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (null >= 0) dup2(null, stream);
  if (null > STDERR_FILENO) close(null);
}

// What this process has made of its signals isn't for others.
void ResetSignals() {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int number : {SIGPIPE, SIGCHLD}) static_cast<void>(signal(number, SIG_DFL));
}

[[noreturn]] void Run(const Prepared& prepared) {
  constexpr int kNotStarted = 127;
  LeaveTerminal();
  ResetSignals();
  if (!prepared.folder.empty() && chdir(prepared.folder.c_str()) != 0) _exit(kNotStarted);
  for (const std::string& place : prepared.places)
    execve(place.c_str(), prepared.arguments.data(), environ);
  _exit(kNotStarted);
}

}  // namespace

namespace Posix {

// Starts a grandchild, which init inherits and waits for; the child ends at once.
void RunDetached(const Launch& launch) {
  const Prepared prepared(launch);
  const pid_t child = fork();
  if (child == 0) {
    if (fork() == 0) Run(prepared);
    _exit(0);
  }
  if (child < 0) return;
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace Posix
