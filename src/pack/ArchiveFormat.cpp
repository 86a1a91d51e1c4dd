#include "pack/ArchiveFormat.h"

#include <cmath>

#include "platform/Text.h"

namespace ArchiveFormat {

std::int32_t NumberAt(std::string_view bytes, std::size_t offset) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;) {
    number = (number << 8U) | static_cast<unsigned char>(bytes[offset + i]);
  }
  return static_cast<std::int32_t>(number);
}

std::string NumberField(double number) {
  const double rounded = std::nearbyint(number);  // ties to even
  if (!(rounded >= static_cast<double>(kSmallestPosition) &&
        rounded <= static_cast<double>(kLargestPosition))) {
    Fail("number ", number, " doesn't fit 32 bits");
  }
  const auto bits = static_cast<std::uint32_t>(static_cast<std::int32_t>(rounded));
  std::string bytes;
  for (unsigned int shift = 0; shift < 32; shift += 8) {
    bytes.push_back(static_cast<char>((bits >> shift) & 255U));
  }
  return bytes;
}

std::string SectorField(std::int64_t bytes) {
  return NumberField(static_cast<double>(bytes) / kSector);
}

Record::Record(std::string_view bytes)
    : offset(NumberAt(bytes, 0) * kSector),
      size(NumberAt(bytes, 4) * kSector),
      sizeField(bytes.substr(4, 4)),
      nameField(bytes.substr(kNameOffset, kNameSize)) {}

bool Record::LiesIn(std::int64_t length) const {
  return offset >= 0 && size >= 0 && offset + size <= WholeSectors(length);
}

std::size_t RecordCount(std::string_view directory) {
  return directory.size() / kRecordSize;
}

Record RecordAt(std::string_view directory, std::size_t index) {
  return Record(directory.substr(index * kRecordSize, kRecordSize));
}

bool HasName(std::string_view record, std::string_view name) {
  // Where the name would have to end tells most records apart.
  return name.size() < kNameSize && record[kNameOffset + name.size()] == '\0' &&
         Text::EqualsIgnoringCase(record.substr(kNameOffset, name.size()), name);
}

}  // namespace ArchiveFormat
