#include "chat/SocketValue.h"

#include <bit>
#include <cstddef>

namespace {

constexpr std::size_t kBitsPerByte = 8;
constexpr std::uint64_t kByteMask = 0xFF;

std::string LowestFirst(std::uint64_t number, std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) {
    bytes += static_cast<char>((number >> (i * kBitsPerByte)) & kByteMask);
  }
  return bytes;
}

std::uint64_t Number(std::string_view bytes, std::size_t count) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < count && i < bytes.size(); ++i) {
    number |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (i * kBitsPerByte);
  }
  return number;
}

struct ToBytes {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(const std::vector<std::uint8_t>& bytes) const {
    return {bytes.begin(), bytes.end()};
  }
  std::string operator()(std::uint8_t value) const { return LowestFirst(value, 1); }
  // True is all bits of a 16-bit number.
  std::string operator()(bool value) const { return LowestFirst(value ? ~0ULL : 0, 2); }
  std::string operator()(std::int16_t value) const {
    return LowestFirst(static_cast<std::uint16_t>(value), sizeof value);
  }
  std::string operator()(std::int32_t value) const {
    return LowestFirst(static_cast<std::uint32_t>(value), sizeof value);
  }
  std::string operator()(float value) const {
    return LowestFirst(std::bit_cast<std::uint32_t>(value), sizeof value);
  }
  std::string operator()(double value) const {
    return LowestFirst(std::bit_cast<std::uint64_t>(value), sizeof value);
  }
  std::string operator()(Currency value) const {
    return LowestFirst(static_cast<std::uint64_t>(value.tenThousandths), sizeof value);
  }
  std::string operator()(Date value) const { return (*this)(value.days); }
};

double Float64(std::string_view bytes) {
  return std::bit_cast<double>(Number(bytes, sizeof(double)));
}

}  // namespace

std::string BytesOf(const SocketValue& value) {
  return std::visit(ToBytes(), value);
}

SocketValue ValueOf(std::string_view bytes, int type) {
  switch (type) {
    case kByteArrayValue:
      return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
    case kByteValue:
      return static_cast<std::uint8_t>(Number(bytes, 1));
    case kBooleanValue:
      return Number(bytes, 2) != 0;
    case kInteger16Value:
      return static_cast<std::int16_t>(Number(bytes, sizeof(std::int16_t)));
    case kInteger32Value:
      return static_cast<std::int32_t>(Number(bytes, sizeof(std::int32_t)));
    case kFloat32Value:
      return std::bit_cast<float>(static_cast<std::uint32_t>(Number(bytes, sizeof(float))));
    case kFloat64Value:
      return Float64(bytes);
    case kCurrencyValue:
      return Currency{static_cast<std::int64_t>(Number(bytes, sizeof(Currency)))};
    case kDateValue:
      return Date{Float64(bytes)};
    default:
      return std::string(bytes);
  }
}
