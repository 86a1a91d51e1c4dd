#include "platform/Process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Text.h"
#include "platform/posix/System.h"

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void NoteStop(int number) {
  stopRequested = number;
}

}  // namespace

namespace Process {

void PrepareStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // The lowest free number is the one of the stream that is missing.
    if (fcntl(stream, F_GETFD) < 0) static_cast<void>(open("/dev/null", O_RDWR));
  }
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv, argv + argc};
}

void CatchStop() {
  struct sigaction action = {};
  action.sa_handler = NoteStop;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    // What the caller has the program ignore, as nohup does, stays ignored.
    struct sigaction before = {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
}

int StopRequested() {
  return stopRequested;
}

std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent,
                                        const std::string& prefix) {
  std::string name = (parent / (prefix + "XXXXXX")).string();
  if (mkdtemp(name.data()) == nullptr) {
    Posix::FailWith("make a folder in", Text::FromUtf8Lossy(parent.string()), errno);
  }
  return name;
}

bool IsPrivateFolder(const std::filesystem::path& folder) {
  constexpr mode_t kOthers = 077;
  struct stat status = {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == geteuid() && (status.st_mode & kOthers) == 0;
}

}  // namespace Process
