#pragma once

#include <functional>
#include <optional>
#include <string>

class FileSystem;

/// Unpacks payload, from file to file: one zlib stream (RFC 1950, window up to 32 KiB) from the
/// first byte on; what follows the stream, such as the sector fill of an archive, is ignored.
class zlibIF {
 public:
  explicit zlibIF(const FileSystem& files) : files_(files) {}

  std::string InputFileName;   // DOS path text
  std::string OutputFileName;  // DOS path text; created or emptied

  /// Raised after each block of 4,096 bytes of input with the percentage of the input's length
  /// that has been read, in whole numbers; 100 for an empty input.
  std::function<void(int percent_completed)> Progress;
  /// Lets pending window events run; called ahead of each block read or written.
  std::function<void()> DoEvents;

  /// Runs to the end of the work. Never fails towards its caller: after a damaged stream, a full
  /// disk or a missing input the output is missing, empty or partial, and that is all. What was
  /// wrong comes back for developers.
  // The program itself by design doesn't look at it. NOLINTNEXTLINE(modernize-use-nodiscard)
  std::optional<std::string> Decompress();

 private:
  void Inflate();

  const FileSystem& files_;
};
