#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class FileSystem;

/// Makes new archives: header, directory and data in one go, in the order of the entries, without
/// gaps.
class ArchiveWriter {
 public:
  /// Adds an entry; `name` has at most 24 bytes. The data is filled with NULs to whole sectors.
  void Add(std::string name, std::string data);
  /// Adds an entry whose data is one zlib stream (RFC 1950) of `data`.
  void AddCompressed(std::string name, std::string_view data);
  /// Adds an entry whose data `produce` gives when its turn to be written comes, so that no more
  /// than one such entry is in memory.
  void AddLater(std::string name, std::function<std::string()> produce);
  /// Writes the archive to `path` (DOS path text); a file that is there is overwritten.
  void Write(const FileSystem& files, const std::string& path) const;

 private:
  struct Entry {
    std::string name;
    std::function<std::string()> produce;
  };
  std::vector<Entry> entries_;
};
