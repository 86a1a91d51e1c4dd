#include "pack/ZlibStream.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include <zlib.h>

#include "platform/Failure.h"

namespace {

constexpr std::size_t kLargestPayload = std::numeric_limits<std::int32_t>::max();

}  // namespace

std::string Compressed(std::string_view data) {
  uLongf length = compressBound(static_cast<uLong>(data.size()));
  std::string stream(length, '\0');
  const int result = compress2(reinterpret_cast<Bytef*>(stream.data()), &length,
                               reinterpret_cast<const Bytef*>(data.data()),
                               static_cast<uLong>(data.size()), Z_BEST_COMPRESSION);
  if (result != Z_OK) Fail("zlib can't compress ", data.size(), " bytes: ", result);
  stream.resize(length);
  return stream;
}

std::optional<ZlibStream> Decompressed(std::string_view bytes) {
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) Fail("zlib can't start");
  // zlib doesn't write to its input.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  std::string data;
  int result = Z_OK;
  while (result == Z_OK && data.size() < kLargestPayload) {
    const std::size_t filled = data.size();
    data.resize(std::max<std::size_t>(filled * 2, 65536));
    stream.next_out = reinterpret_cast<Bytef*>(data.data() + filled);
    stream.avail_out = static_cast<uInt>(
        std::min<std::size_t>(data.size() - filled, std::numeric_limits<uInt>::max()));
    const uInt room = stream.avail_out;
    result = inflate(&stream, Z_NO_FLUSH);
    data.resize(filled + room - stream.avail_out);
  }
  const std::size_t length = bytes.size() - stream.avail_in;
  inflateEnd(&stream);
  if (result != Z_STREAM_END) return std::nullopt;
  return ZlibStream{std::move(data), length};
}
