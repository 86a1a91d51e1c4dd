#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "platform/Failure.h"

/// The form of an IMG archive in bytes.
///
///     offset  size
///          0     4  "VER2"
///          4     4  number of directory records
///          8  32 each  directory records
///          -     -  free directory space, up to the lowest data offset
///          -     -  data of the entries, each from a sector boundary (2,048 bytes) on
///
///     a record:   0  4  offset of the data in sectors
///                 4  4  size of the data in sectors
///                 8 24  name, ended by the first NUL if there is one
///
/// All numbers are 32-bit signed, little-endian. Names are Windows-1252. The true length of an
/// entry isn't recorded: what was shorter than its last sector has NULs behind it.
namespace ArchiveFormat {

inline constexpr std::string_view kMagic = "VER2";
inline constexpr std::int64_t kSector = 2048;
inline constexpr std::int64_t kCountOffset = 4;
inline constexpr std::int64_t kHeaderSize = 8;
inline constexpr std::int64_t kRecordSize = 32;
inline constexpr std::size_t kNameOffset = 8;  // in a record
inline constexpr std::size_t kNameSize = 24;
// Positions are 32-bit signed.
inline constexpr std::int64_t kLargestPosition = std::numeric_limits<std::int32_t>::max();
inline constexpr std::int64_t kSmallestPosition = std::numeric_limits<std::int32_t>::min();

/// `bytes` rounded up to whole sectors.
constexpr std::int64_t WholeSectors(std::int64_t bytes) {
  return (bytes + kSector - 1) / kSector * kSector;
}

/// The number at `offset` of some bytes.
std::int32_t NumberAt(std::string_view bytes, std::size_t offset);
/// A number's four bytes; fails out of 32-bit range.
std::string NumberField(double number);
/// The four bytes that say `bytes`, a whole number of sectors.
std::string SectorField(std::int64_t bytes);

/// A directory record as it stands in the file; it views the bytes that it was read from.
struct Record {
  explicit Record(std::string_view bytes);

  /// The name field up to its first NUL.
  [[nodiscard]] std::string_view Name() const { return nameField.substr(0, nameField.find('\0')); }
  /// Whether the data lies in a file of `length` bytes. Other makers' archives may end inside
  /// their last sector.
  [[nodiscard]] bool LiesIn(std::int64_t length) const;

  std::int64_t offset;  // bytes
  std::int64_t size;    // bytes
  std::string_view sizeField;
  std::string_view nameField;
};

/// The number of records in `directory`.
std::size_t RecordCount(std::string_view directory);
/// The record of the 0-based `index`.
Record RecordAt(std::string_view directory, std::size_t index);
/// Whether the name in a record's bytes equals `name` without regard to case. A name that fills its
/// field has no NUL and never does.
bool HasName(std::string_view record, std::string_view name);

/// Fails with what is wrong with the archive at `path`.
template <typename... Parts>
[[noreturn]] void FailOn(const std::string& path, const Parts&... parts) {
  Fail("archive \"", path, "\": ", parts...);
}

}  // namespace ArchiveFormat
