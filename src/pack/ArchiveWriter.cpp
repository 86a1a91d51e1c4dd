#include "pack/ArchiveWriter.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include <zlib.h>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace {

constexpr std::size_t kSector = 2048;
constexpr std::size_t kNameSize = 24;
constexpr std::size_t kLargestPayload = std::numeric_limits<std::int32_t>::max();

std::size_t WholeSectors(std::size_t bytes) {
  return (bytes + kSector - 1) / kSector * kSector;
}

std::string SectorField(std::size_t bytes) {
  return clsIMGtool::NumberToBytes(static_cast<double>(bytes) / static_cast<double>(kSector));
}

}  // namespace

void ArchiveWriter::Add(std::string name, std::string data) {
  AddLater(std::move(name), [data = std::move(data)] { return data; });
}

void ArchiveWriter::AddCompressed(std::string name, std::string_view data) {
  Add(std::move(name), Compressed(data));
}

void ArchiveWriter::AddLater(std::string name, std::function<std::string()> produce) {
  if (name.size() > kNameSize) {
    Fail("the name \"", name, "\" has ", name.size(), " bytes, an archive takes ", kNameSize);
  }
  entries_.push_back({std::move(name), std::move(produce)});
}

void ArchiveWriter::Write(const FileSystem& files, const std::string& path) const {
  std::string head = "VER2" + clsIMGtool::NumberToBytes(static_cast<double>(entries_.size()));
  std::size_t position = WholeSectors(head.size() + entries_.size() * 32);
  const std::size_t headSize = position;
  File archive = files.Create(path);
  for (const Entry& entry : entries_) {
    const std::string data = entry.produce();
    const std::size_t size = WholeSectors(data.size());
    if (position + size > std::numeric_limits<std::int32_t>::max()) {
      Fail("archive \"", path, "\": it would grow beyond 2 GiB at the entry \"", entry.name, "\"");
    }
    archive.WriteAt(static_cast<std::int64_t>(position), data);
    head += SectorField(position) + SectorField(size) + entry.name;
    head.append(kNameSize - entry.name.size(), '\0');
    position += size;
  }
  archive.SetSize(static_cast<std::int64_t>(position));
  head.resize(headSize);
  archive.WriteAt(0, head);
  archive.Close();
}

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
