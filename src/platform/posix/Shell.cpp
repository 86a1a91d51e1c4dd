#include "platform/Shell.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/posix/System.h"

namespace {

constexpr const char* kOpener = "xdg-open";

// All that the new process needs, made ready before the fork: after it only calls that a signal
// handler may make are safe.
struct Launch {
  std::vector<std::string> programs;  // the places where the opener may be, in order
  std::string argument;
  std::string folder;  // empty: the process's own
};

std::vector<std::string> PlacesOfOpener() {
  std::string path = Posix::Environment("PATH");
  if (path.empty()) path = "/usr/local/bin:/usr/bin:/bin";
  std::vector<std::string> places;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find(':', start), path.size());
    const std::string folder = path.substr(start, end - start);
    places.push_back((folder.empty() ? "." : folder) + "/" + kOpener);
    start = end + 1;
  }
  return places;
}

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

[[noreturn]] void Run(const Launch& launch, const std::vector<const char*>& programs) {
  constexpr int kNotStarted = 127;
  LeaveTerminal();
  ResetSignals();
  if (!launch.folder.empty() && chdir(launch.folder.c_str()) != 0) _exit(kNotStarted);
  // execve takes what it doesn't change as changeable.
  std::array<char*, 3> arguments = {const_cast<char*>(kOpener),
                                    const_cast<char*>(launch.argument.c_str()), nullptr};
  for (const char* const program : programs) execve(program, arguments.data(), environ);
  _exit(kNotStarted);
}

// Starts a grandchild, which init inherits and waits for; the child ends at once.
void RunDetached(const Launch& launch) {
  std::vector<const char*> programs;
  for (const std::string& program : launch.programs) programs.push_back(program.c_str());
  const pid_t child = fork();
  if (child == 0) {
    if (fork() == 0) Run(launch, programs);
    _exit(0);
  }
  if (child < 0) return;
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

void DesktopOpener::Open(const std::string& file, const std::string& folder) {
  if (file.empty() || file.find('\0') != std::string::npos) return;
  Launch launch;
  launch.programs = PlacesOfOpener();
  try {
    // What is no path of a file that is there may be an address: the desktop knows.
    const bool isPath = DosPath::IsFullPath(file) ||
                        (!DosPath::HasWildcards(file) &&
                         !files_.FindFirst(file, kFindHidden | kFindSystem | kFindFolders).empty());
    launch.argument = isPath ? files_.ToNative(file).string() : Text::ToUtf8(file);
    if (!folder.empty()) launch.folder = files_.ToNative(folder).string();
  } catch (const Failure&) {
    return;  // As the desktop does with a file that isn't there: nothing opens.
  }
  // No file's name is taken for an option.
  if (launch.argument.starts_with('-')) launch.argument.insert(0, "./");
  RunDetached(launch);
}
