#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

class FileSystem;
class clsIMGtool;

/// Lengths of a payload in bytes.
struct PayloadLength {
  std::int64_t packed;  // whole sectors
  std::int64_t unpacked;
};

/// Unpacks a payload of the loaded `pack` as an install would, checksum included, and keeps nothing
/// of it. Fails if the pack has no such entry, or its stream is
/// damaged. Events run meanwhile.
PayloadLength CheckPayload(const FileSystem& files, const clsIMGtool& pack, std::string_view name,
                           const std::function<void()>& doEvents);
