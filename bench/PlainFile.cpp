#include "PlainFile.h"

#include <cerrno>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Failure.h"

namespace {

int FlagsOf(PlainFile::Mode mode) {
  switch (mode) {
    case PlainFile::Mode::kRead:
      return O_RDONLY | O_CLOEXEC;
    case PlainFile::Mode::kReadWrite:
      return O_RDWR | O_CLOEXEC;
    case PlainFile::Mode::kCreate:
      break;
  }
  return O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC;
}

void Require(bool done, const char* operation) {
  if (!done) Fail("benchmark: ", operation, " failed: ", errno);
}

}  // namespace

PlainFile::PlainFile(const std::filesystem::path& path, Mode mode)
    : number_(open(path.c_str(), FlagsOf(mode), 0644)) {
  if (number_ < 0) Fail("benchmark: ", path.string(), " can't be opened: ", errno);
}

PlainFile::~PlainFile() {
  close(number_);
}

std::int64_t PlainFile::Size() const {
  struct stat status = {};
  Require(fstat(number_, &status) == 0, "stat");
  return status.st_size;
}

std::size_t PlainFile::Read(char* buffer, std::size_t length) const {
  const ssize_t count = read(number_, buffer, length);
  Require(count >= 0, "read");
  return static_cast<std::size_t>(count);
}

void PlainFile::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = write(number_, bytes.data(), bytes.size());
    Require(count > 0, "write");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void PlainFile::Seek(std::int64_t offset) const {
  Require(lseek(number_, offset, SEEK_SET) == offset, "seek");
}

void PlainFile::SetSize(std::int64_t size) const {
  Require(ftruncate(number_, size) == 0, "truncate");
}

void PlainFile::Sync() const {
  Require(fsync(number_) == 0, "sync");
}

std::string ReadPlain(const std::filesystem::path& path) {
  PlainFile file(path, PlainFile::Mode::kRead);
  std::string bytes(static_cast<std::size_t>(file.Size()), '\0');
  std::size_t done = 0;
  while (const std::size_t count = file.Read(bytes.data() + done, bytes.size() - done)) {
    done += count;
  }
  return bytes;
}

void WritePlain(const std::filesystem::path& path, std::string_view bytes) {
  PlainFile(path, PlainFile::Mode::kCreate).Write(bytes);
}

void CopyByCommand(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::string name = "cp";
  std::string source = from.string();
  std::string target = to.string();
  char* const arguments[] = {name.data(), source.data(), target.data(), nullptr};
  pid_t child = 0;
  const int error = posix_spawnp(&child, "cp", nullptr, nullptr, arguments, environ);
  if (error != 0) Fail("benchmark: cp can't be started: ", error);
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) Fail("benchmark: cp failed: ", status);
}

void SyncPlain(const std::filesystem::path& path) {
  PlainFile(path, PlainFile::Mode::kReadWrite).Sync();
}

void SettleMachine(const std::filesystem::path& folder) {
  const int number = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  Require(number >= 0, "open");
  const int result = syncfs(number);
  close(number);
  Require(result == 0, "sync");

  const std::filesystem::path filler = folder / "filler.bin";
  const std::string block(std::size_t{1} << 20, 'x');
  const PlainFile file(filler, PlainFile::Mode::kCreate);
  for (int i = 0; i < 1024; ++i) file.Write(block);
  file.SetSize(0);
  std::filesystem::remove(filler);
}
