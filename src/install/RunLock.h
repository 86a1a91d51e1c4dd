#pragma once

#include <optional>
#include <string_view>

#include "platform/FolderLock.h"

class FileSystem;

/// The game directory for one run: two that change it at once would damage it. What can't be
/// locked, because nothing can be changed there, needs no lock.
class RunLock {
 public:
  /// Takes the directory (DOS path text) if it is free, and rids it of what a run that was killed
  /// there has left half-written. `program` is what others are told.
  RunLock(const FileSystem& files, std::string_view gameDirectory, std::string_view program);

  /// Who else has it; then the run must not begin.
  [[nodiscard]] std::optional<FolderLock::Holder> Other() const;

 private:
  FolderLock lock_;
};
