#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// A file as a plain program would use it: bare system calls, nothing checked but success. The
/// yardsticks and the makers of test data go through this and never through the engine.
class PlainFile {
 public:
  enum class Mode { kRead, kReadWrite, kCreate };

  PlainFile(const std::filesystem::path& path, Mode mode);
  PlainFile(const PlainFile&) = delete;
  PlainFile& operator=(const PlainFile&) = delete;
  PlainFile(PlainFile&&) = delete;
  PlainFile& operator=(PlainFile&&) = delete;
  ~PlainFile();

  [[nodiscard]] std::int64_t Size() const;
  /// Reads on from where the file stands; returns the number of bytes, 0 at the end.
  std::size_t Read(char* buffer, std::size_t length) const;
  /// Writes where the file stands.
  void Write(std::string_view bytes) const;
  void Seek(std::int64_t offset) const;
  void SetSize(std::int64_t size) const;
  /// Waits until the content is on the disk.
  void Sync() const;

 private:
  int number_;
};

std::string ReadPlain(const std::filesystem::path& path);
void WritePlain(const std::filesystem::path& path, std::string_view bytes);
/// Copies a file by the system's `cp`.
void CopyByCommand(const std::filesystem::path& from, const std::filesystem::path& to);
void SyncPlain(const std::filesystem::path& path);
/// Waits until everything that was written to the file system of `folder` is on the disk, so that
/// it doesn't weigh on what is measured next. Then fills memory with a file of 1 GiB there, more
/// than any row writes, and removes it, so that what is measured next finds memory that the machine
/// has: a virtual one hands free memory back to its host, and getting it again takes several times
/// what copying into it does.
void SettleMachine(const std::filesystem::path& folder);
