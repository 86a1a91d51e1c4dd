#pragma once

#include <cstddef>
#include <functional>
#include <optional>
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

/// `data` as one zlib stream. The same data gives the same bytes.
std::string Compressed(std::string_view data);

/// The zlib stream at the start of some bytes.
struct ZlibStream {
  std::string data;    // unpacked
  std::size_t length;  // of the stream itself, in bytes
};
/// Unpacks the stream at the start of `bytes`; nothing if there is no whole one, or
/// if its data is 2 GiB or more.
std::optional<ZlibStream> Decompressed(std::string_view bytes);
