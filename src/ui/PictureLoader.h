#pragma once

#include <QByteArray>
#include <QImage>
#include <cstdint>
#include <string>

/// Pictures out of packs, which may be made by anyone.
namespace PictureLoader {

/// Pixels of the largest picture that is loaded: what fills eight of the largest usual screens.
inline constexpr std::int64_t kMostPixels = std::int64_t{30} * 1024 * 1024;
/// Length of the largest file that is loaded, in bytes.
inline constexpr std::int64_t kLargestFile = std::int64_t{128} * 1024 * 1024;

/// The picture in the bytes of a PNG, JPEG, BMP or GIF file (its first frame), whatever the file
/// is called; bytes behind its end don't matter. Fails, naming `source`, on any other content and,
/// before memory is taken for it, on a picture of more than `mostPixels`.
QImage FromBytes(const QByteArray& bytes, const std::string& source,
                 std::int64_t mostPixels = kMostPixels);

}  // namespace PictureLoader
