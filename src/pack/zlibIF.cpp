#include "pack/zlibIF.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include <zlib.h>

#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace {

constexpr std::size_t kBlock = 4096;

/// The state of an inflate run, freed at its end.
class InflateStream {
 public:
  InflateStream() {
    if (inflateInit(&stream_) != Z_OK) Fail("zlib can't start");
  }
  InflateStream(const InflateStream&) = delete;
  InflateStream& operator=(const InflateStream&) = delete;
  ~InflateStream() { inflateEnd(&stream_); }

  z_stream* operator->() { return &stream_; }
  int Inflate() { return inflate(&stream_, Z_NO_FLUSH); }

 private:
  z_stream stream_{};
};

}  // namespace

void zlibIF::Decompress() {
  Trapped("zlibIF.Decompress", [&] { Inflate(); });
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
  std::array<Bytef, kBlock> in{};
  std::array<Bytef, kBlock> out{};
  stream->next_out = out.data();
  stream->avail_out = kBlock;
  std::int64_t bytesRead = 0;
  std::int64_t bytesWritten = 0;
  const auto writeBlock = [&] {
    letEventsRun();
    const std::size_t count = kBlock - stream->avail_out;
    output.WriteAt(bytesWritten, std::string_view(reinterpret_cast<char*>(out.data()), count));
    bytesWritten += static_cast<std::int64_t>(count);
    stream->next_out = out.data();
    stream->avail_out = kBlock;
  };

  for (int result = Z_OK; result != Z_STREAM_END;) {
    letEventsRun();
    const std::size_t count =
        input.ReadSomeAt(bytesRead, reinterpret_cast<char*>(in.data()), in.size());
    if (count == 0) Fail("payload \"", InputFileName, "\" ends before its stream does");
    bytesRead += static_cast<std::int64_t>(count);
    stream->next_in = in.data();
    stream->avail_in = static_cast<uInt>(count);
    do {
      result = stream.Inflate();
      if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
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
  output.Close();
}
