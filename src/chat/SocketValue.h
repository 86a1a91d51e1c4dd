#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// An amount of money with four decimals, as its 10,000-fold.
struct Currency {
  std::int64_t tenThousandths = 0;
  bool operator==(const Currency&) const = default;
};

/// A day and its time as days since 30 December 1899.
struct Date {
  double days = 0;
  bool operator==(const Date&) const = default;
};

/// What a socket sends and gives: text (Windows-1252 bytes), an array of bytes, or a number, whose
/// bytes go out lowest first. The empty value stands for every type that a socket can't send.
using SocketValue =
    std::variant<std::monostate, std::string, std::vector<std::uint8_t>, std::uint8_t, bool,
                 std::int16_t, std::int32_t, float, double, Currency, Date>;

/// Types of a `SocketValue`, by number.
enum SocketValueType : int {
  kInteger16Value = 2,
  kInteger32Value = 3,
  kFloat32Value = 4,
  kFloat64Value = 5,
  kCurrencyValue = 6,
  kDateValue = 7,
  kTextValue = 8,
  kBooleanValue = 11,
  kByteValue = 17,
  kByteArrayValue = 8209,
};

/// The bytes of a value on the wire.
std::string BytesOf(const SocketValue& value);

/// The value of a type at the front of `bytes`; missing bytes count as 0. A type that isn't in the
/// list above gives text.
SocketValue ValueOf(std::string_view bytes, int type);
