#include "pack/BlockWriter.h"

#include <algorithm>
#include <string_view>

#include "platform/FileSystem.h"

BlockWriter::BlockWriter(File& target, std::int64_t position)
    : target_(target), position_(position), block_(static_cast<std::size_t>(kBlock), '\0') {}

std::size_t BlockWriter::Left() const {
  return static_cast<std::size_t>(kBlock - position_ % kBlock) - filled_;
}

void BlockWriter::Take(std::size_t count) {
  const bool isFull = count == Left();
  filled_ += count;
  if (isFull) Flush();
}

void BlockWriter::Append(const File& source, std::int64_t offset, std::int64_t length) {
  while (length > 0) {
    const auto count = std::min(static_cast<std::size_t>(length), Left());
    const std::size_t there = source.ReadSomeAt(offset, Room(), count);
    std::fill(Room() + there, Room() + count, '\0');
    Take(count);
    offset += static_cast<std::int64_t>(count);
    length -= static_cast<std::int64_t>(count);
  }
}

void BlockWriter::Flush() {
  target_.WriteAt(position_, std::string_view(block_).substr(0, filled_));
  position_ += static_cast<std::int64_t>(filled_);
  filled_ = 0;
}
