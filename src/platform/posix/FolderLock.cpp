#include "platform/FolderLock.h"

#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/System.h"

// The lock is one on the folder itself, which asks for no right to write and leaves nothing. The
// file says who has it, no more.

namespace {

constexpr const char* kFile = FolderLock::kFileName.data();

std::string ContentOfFile(int folder, std::size_t most) {
  const Posix::Descriptor file(
      openat(folder, kFile, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  std::string text(most, '\0');
  const ssize_t count = file.IsOpen() ? read(file.Number(), text.data(), text.size()) : 0;
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return text;
}

// Not every folder can hold a file, and not every disk takes one more: the lock is one without it.
void WriteFile(int folder, const std::string& text) {
  constexpr mode_t kForAllToRead = 0644;
  // What lies there, a link perhaps, isn't written to.
  unlinkat(folder, kFile, 0);
  const Posix::Descriptor file(
      openat(folder, kFile, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kForAllToRead));
  if (file.IsOpen()) static_cast<void>(!write(file.Number(), text.data(), text.size()));
}

bool HasFile(int folder) {
  struct stat status = {};
  return fstatat(folder, kFile, &status, AT_SYMLINK_NOFOLLOW) == 0;
}

// Whether an open folder is still the one of this path: it may have been removed meanwhile.
bool IsStillAt(const std::filesystem::path& path, int folder) {
  struct stat here = {};
  struct stat there = {};
  return fstat(folder, &here) == 0 && stat(path.c_str(), &there) == 0 &&
         here.st_dev == there.st_dev && here.st_ino == there.st_ino;
}

}  // namespace

FolderLock FolderLock::Take(const std::filesystem::path& folder, std::string_view program) {
  FolderLock lock;
  Posix::Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return lock;
  if (flock(opened.Number(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK) return lock;
    lock.state_ = State::kTaken;
    lock.holder_ = HolderIn(ContentOfFile(opened.Number(), kLongestText));
    return lock;
  }
  lock.wasLeft_ = HasFile(opened.Number());
  WriteFile(opened.Number(), TextOf(program, getpid()));
  if (!IsStillAt(folder, opened.Number())) return {};
  lock.state_ = State::kHeld;
  lock.handle_ = opened.Release();
  return lock;
}

void FolderLock::Release() noexcept {
  const int folder = static_cast<int>(std::exchange(handle_, kNoHandle));
  state_ = State::kNone;
  if (folder < 0) return;
  unlinkat(folder, kFile, 0);
  close(folder);
}
