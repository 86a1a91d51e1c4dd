#include "pack/zlibIF.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <zlib.h>

#include "core/basDebugLog.h"
#include "pack/BlockWriter.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace {

// Events are let run for each block; the disk is asked for many at a time.
constexpr std::size_t kBlock = 4096;
constexpr std::size_t kBlocksOnDisk = 16 * kBlock;

/// The state of an inflate run, freed at its end.
class InflateStream {
 public:
  InflateStream() {
    if (inflateInit(&stream_) != Z_OK) Fail("zlib can't start");
  }
  InflateStream(const InflateStream&) = delete;
  InflateStream& operator=(const InflateStream&) = delete;
  InflateStream(InflateStream&&) = delete;
  InflateStream& operator=(InflateStream&&) = delete;
  ~InflateStream() { inflateEnd(&stream_); }

  z_stream* operator->() { return &stream_; }
  int Inflate() { return inflate(&stream_, Z_NO_FLUSH); }

 private:
  z_stream stream_{};
};

/// A file's blocks from the first to the last.
class BlockReader {
 public:
  explicit BlockReader(const File& file) : file_(file), buffer_(kBlocksOnDisk, '\0') {}

  /// The next block; empty at the end of the file.
  std::string_view Next() {
    if (left_.empty()) {
      const std::size_t count = file_.ReadSomeAt(position_, buffer_.data(), buffer_.size());
      position_ += static_cast<std::int64_t>(count);
      left_ = std::string_view(buffer_).substr(0, count);
    }
    const std::string_view block = left_.substr(0, kBlock);
    left_.remove_prefix(block.size());
    return block;
  }

 private:
  const File& file_;
  std::string buffer_;
  std::string_view left_;
  std::int64_t position_ = 0;
};

}  // namespace

std::optional<std::string> zlibIF::Decompress() {
  return CauseOf("zlibIF.Decompress", [&] { Inflate(); });
}

void zlibIF::Inflate() {
  const auto letEventsRun = [&] {
    if (DoEvents) DoEvents();
  };
  const File input = files_.OpenForReading(InputFileName);
  File output = files_.Create(OutputFileName);
  const std::int64_t length = input.Size();
  if (length == 0 && Progress) Progress(100);

  InflateStream stream;
  BlockReader reader(input);
  BlockWriter writer(output);
  const auto makeRoom = [&] {
    stream->next_out = reinterpret_cast<Bytef*>(writer.Room());
    stream->avail_out = kBlock;
  };
  const auto writeBlock = [&] {
    letEventsRun();
    writer.Take(kBlock - stream->avail_out);
    makeRoom();
  };

  makeRoom();
  std::int64_t bytesRead = 0;
  for (int result = Z_OK; result != Z_STREAM_END;) {
    letEventsRun();
    const std::string_view block = reader.Next();
    if (block.empty()) {
      writer.Flush();
      Fail("payload \"", InputFileName, "\" ends before its stream does");
    }
    bytesRead += static_cast<std::int64_t>(block.size());
    // zlib doesn't write to its input.
    stream->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(block.data()));
    stream->avail_in = static_cast<uInt>(block.size());
    do {
      result = stream.Inflate();
      if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
        writer.Flush();
        Fail("payload \"", InputFileName, "\" is damaged ahead of byte ", bytesRead, ": zlib's ",
             result);
      }
      if (stream->avail_out == 0) writeBlock();
      // With the output block emptied, zlib may have more to give without more input.
    } while (result != Z_STREAM_END && (stream->avail_in > 0 || stream->avail_out == kBlock) &&
             result != Z_BUF_ERROR);
    if (result == Z_STREAM_END && stream->avail_out < kBlock) writeBlock();
    if (Progress) Progress(static_cast<int>(100 * bytesRead / length));
  }
  writer.Flush();
  output.Close();
}
