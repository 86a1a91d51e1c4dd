#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class File;

/// Writes to a file what comes in pieces, one behind the other, a block at a time. The blocks end
/// at whole multiples of their size, where the system has the least to do for each.
class BlockWriter {
 public:
  static constexpr std::int64_t kBlock = 65536;  // what stays in a processor's cache

  /// `position`: where the first piece goes.
  explicit BlockWriter(File& target, std::int64_t position = 0);

  /// Up to how many bytes fit the block in hand; never 0.
  [[nodiscard]] std::size_t Left() const;
  /// Where the next piece goes, with room for `Left` bytes.
  char* Room() { return block_.data() + filled_; }
  /// The room now holds a piece of `count` bytes.
  void Take(std::size_t count);
  /// Adds `length` bytes of `source` from `offset` on, with NULs for what lies behind its end.
  void Append(const File& source, std::int64_t offset, std::int64_t length);
  /// Writes what hasn't filled its block.
  void Flush();
  /// The position up to which the file has been written.
  [[nodiscard]] std::int64_t Written() const { return position_; }

 private:
  File& target_;
  std::int64_t position_;  // where the block goes
  std::string block_;
  std::size_t filled_ = 0;
};
