#pragma once

#include <filesystem>
#include <string>

#include "platform/FolderLock.h"

class FileSystem;

/// A folder of the tool's own in the system's place for temporary files, readable by its owner
/// alone: made for one run and removed with all its content at the end, whatever happened. What
/// runs that were killed have left there goes with the next one's start.
///
/// Made and removed by native paths, which not everybody's place for temporary files spares us.
class OwnTempFolder {
 public:
  explicit OwnTempFolder(const FileSystem& files);
  OwnTempFolder(const OwnTempFolder&) = delete;
  OwnTempFolder& operator=(const OwnTempFolder&) = delete;
  OwnTempFolder(OwnTempFolder&&) = delete;
  OwnTempFolder& operator=(OwnTempFolder&&) = delete;
  ~OwnTempFolder();

  /// DOS path text, without a trailing backslash.
  [[nodiscard]] const std::string& DosPath() const { return dosPath_; }

 private:
  std::filesystem::path native_;
  FolderLock lock_;
  std::string dosPath_;
};
