#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// `data` as one zlib stream (RFC 1950). The same data gives the same bytes.
std::string Compressed(std::string_view data);

/// The zlib stream at the start of some bytes.
struct ZlibStream {
  std::string data;    // unpacked
  std::size_t length;  // of the stream itself, in bytes
};
/// Unpacks the stream at the start of `bytes`; nothing if there is no whole one, or
/// if its data is 2 GiB or more.
std::optional<ZlibStream> Decompressed(std::string_view bytes);
