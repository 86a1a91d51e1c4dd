#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Archives made byte by byte, without a line of the code under test.
namespace RawArchive {

inline constexpr std::size_t kSector = 2048;

/// A 32-bit number, least significant byte first.
inline std::string Number(std::int64_t number) {
  std::string bytes;
  for (unsigned shift = 0; shift < 32; shift += 8)
    bytes += static_cast<char>((static_cast<std::uint64_t>(number) >> shift) & 255U);
  return bytes;
}

inline std::string Header(std::int64_t count) {
  return "VER2" + Number(count);
}

/// A directory record; offset and size in sectors, `name` with all that stands in its field.
inline std::string Record(std::int64_t offset, std::int64_t size, std::string name) {
  name.resize(24);
  return Number(offset) + Number(size) + name;
}

inline std::string Filled(std::string bytes, std::size_t size = 0) {
  const std::size_t least = std::max(bytes.size(), size);
  bytes.resize((least + kSector - 1) / kSector * kSector);
  return bytes;
}

/// Bytes that depend on the seed alone, the same on every machine.
inline std::string Noise(std::size_t size, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
  return bytes;
}

struct Entry {
  std::string name;
  std::string data;
};

/// Header, records, free directory space up to `firstSector`, and the data one after the other.
inline std::string Make(const std::vector<Entry>& entries, std::size_t firstSector = 1) {
  std::string head = Header(static_cast<std::int64_t>(entries.size()));
  std::string data;
  for (const Entry& entry : entries) {
    const std::string whole = Filled(entry.data);
    head += Record(static_cast<std::int64_t>(firstSector + data.size() / kSector),
                   static_cast<std::int64_t>(whole.size() / kSector), entry.name);
    data += whole;
  }
  head.resize(firstSector * kSector);
  return head + data;
}

/// `count` entries of one sector each, e1, e2, ..., with data of their own.
inline std::vector<Entry> Numbered(int count) {
  std::vector<Entry> entries;
  for (int i = 1; i <= count; ++i)
    entries.push_back(
        {"e" + std::to_string(i), Noise(kSector, static_cast<std::uint32_t>(1000 + i))});
  return entries;
}

/// Changes `share` of the bytes, at least one, at random.
inline std::string Damaged(std::string bytes, double share, std::mt19937& random) {
  const auto hits =
      std::max(std::size_t{1}, static_cast<std::size_t>(share * static_cast<double>(bytes.size())));
  for (std::size_t i = 0; i < hits; ++i)
    bytes[random() % bytes.size()] = static_cast<char>(random());
  return bytes;
}

}  // namespace RawArchive
