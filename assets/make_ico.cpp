// make_ico OUT.ico IN.png...: packs square PNG files into one Windows icon file.
//
// An icon file, all numbers little-endian:
//
//   offset 0    2 bytes  0
//          2    2        1 (icon)
//          4    2        number of pictures N
//          6    16 × N   directory
//          ...           the PNG files, whole, one after another
//
// and each directory record:
//
//          0    1        width, 0 for 256      4    2   planes, 1
//          1    1        height, likewise      6    2   bits a pixel, 32
//          2    1        colours, 0            8    4   bytes of the picture
//          3    1        0                     12   4   its offset in the file
#include <cstddef>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t headSize = 6;
constexpr std::size_t recordSize = 16;

struct Picture {
  std::string bytes;
  std::uint32_t size = 0;  // width and height, in pixels
};

std::uint32_t BigEndian32(std::string_view bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    value = (value << 8U) | static_cast<unsigned char>(bytes[at + i]);
  }
  return value;
}

void AppendLittleEndian(std::string& out, std::size_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) {
    out += static_cast<char>((value >> (8 * i)) & 0xFFU);
  }
}

// A PNG begins with its signature of 8 bytes, then the length and name of the first chunk, IHDR,
// whose data begin with width and height.
Picture ReadPicture(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Picture picture;
  picture.bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  if (picture.bytes.size() < 24 || !picture.bytes.starts_with("\x89PNG\r\n\x1A\n")) {
    throw std::runtime_error(path + ": not a PNG file");
  }
  picture.size = BigEndian32(picture.bytes, 16);
  const std::uint32_t height = BigEndian32(picture.bytes, 20);
  if (picture.size != height || height == 0 || height > 256) {
    throw std::runtime_error(path + ": " + std::to_string(picture.size) + " x " +
                             std::to_string(height) + " pixels, not a square of 1 to 256");
  }
  return picture;
}

std::string PackIcon(const std::vector<Picture>& pictures) {
  std::string icon;
  AppendLittleEndian(icon, 0, 2);
  AppendLittleEndian(icon, 1, 2);
  AppendLittleEndian(icon, pictures.size(), 2);
  std::size_t offset = headSize + recordSize * pictures.size();
  for (const Picture& picture : pictures) {
    AppendLittleEndian(icon, picture.size % 256, 1);
    AppendLittleEndian(icon, picture.size % 256, 1);
    AppendLittleEndian(icon, 0, 2);
    AppendLittleEndian(icon, 1, 2);
    AppendLittleEndian(icon, 32, 2);
    AppendLittleEndian(icon, picture.bytes.size(), 4);
    AppendLittleEndian(icon, offset, 4);
    offset += picture.bytes.size();
  }
  for (const Picture& picture : pictures) {
    icon += picture.bytes;
  }
  return icon;
}

void WriteIcon(const std::string& path, const std::string& icon) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(icon.data(), static_cast<std::streamsize>(icon.size()));
  file.close();
  if (!file) {
    throw std::runtime_error(path + ": can't be written");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() < 2) {
    std::cerr << "Usage: make_ico OUT.ico IN.png...\n";
    return 2;
  }
  try {
    std::vector<Picture> pictures;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      pictures.push_back(ReadPicture(arguments[i]));
    }
    WriteIcon(arguments.front(), PackIcon(pictures));
  } catch (const std::exception& error) {
    std::cerr << "make_ico: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
