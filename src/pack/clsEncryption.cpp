#include "pack/clsEncryption.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <type_traits>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

constexpr std::size_t kChunk = 32767;

/// The bytes of UTF-16 text, the low byte of each unit first.
std::string LittleEndianBytes(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 255U));
    bytes.push_back(static_cast<char>(unit >> 8U));
  }
  return bytes;
}

/// Deletes the file `path` if it is there and can be deleted. Unlike emptying it, this leaves the
/// input readable if it is the same file.
void DeleteQuietly(const FileSystem& files, const std::string& path) {
  if (DosPath::HasWildcards(path)) return;
  try {
    files.Delete(path);
  } catch (const Failure&) {
    // The creation behind it will fail, if it matters.
  }
}

/// The cipher over as many bytes at once as the compiler can make one machine word of: each goes
/// by its own key byte at `key`, whose place in the key is `position` and up, and by that one's
/// neighbour, which hasn't changed yet.
template <std::size_t kLanes>
void EncryptLanes(char* bytes, unsigned char* key, std::size_t position) {
  std::array<unsigned char, kLanes> data{};
  std::array<unsigned char, kLanes> own{};
  std::array<unsigned char, kLanes> neighbour{};
  std::memcpy(data.data(), bytes, kLanes);
  std::memcpy(own.data(), key, kLanes);
  std::memcpy(neighbour.data(), key + 1, kLanes);
  for (std::size_t i = 0; i < kLanes; ++i) {
    const auto place = static_cast<unsigned char>(position + i);
    data[i] = static_cast<unsigned char>(data[i] ^ own[i] ^ (own[i] * place));
    own[i] = static_cast<unsigned char>(own[i] + neighbour[i]);
  }
  std::memcpy(bytes, data.data(), kLanes);
  std::memcpy(key, own.data(), kLanes);
}

}  // namespace

const std::string& clsEncryption::IndexPassword() {
  static const std::string password = "___ZiTrOnEnTEE_//_mod_depots_\xD1\xF8";
  return password;
}

/// Runs `body`; shows its failure under the procedure's name and returns false if it failed.
template <typename Body>
bool clsEncryption::Guarded(const char* procedure, Body&& body) {
  try {
    body();
    return true;
  } catch (const Failure& failure) {
    if (MessageBox) {
      MessageBox(Concat("Error: ", failure.Number(), ". ", failure.what()), procedure);
    }
    return false;
  }
}

void clsEncryption::BuildKey() {
  const std::string bytes = LittleEndianBytes(Text::ToUtf16(Password));
  KeyBytes_.assign(bytes.begin(), bytes.end());
  KeyPos_ = 0;
}

inline void clsEncryption::EncryptByte(unsigned char& b) {
  if (KeyBytes_.empty()) Fail("the pass phrase is empty");
  const std::size_t last = KeyBytes_.size() - 1;
  unsigned char& key = KeyBytes_[KeyPos_];
  b = static_cast<unsigned char>(b ^ key);
  // The product is one of 16-bit signed arithmetic, which bounds the length of a pass phrase.
  const std::size_t product = key * KeyPos_;
  if (product > std::numeric_limits<std::int16_t>::max()) {
    Fail("the pass phrase is too long: ", product, " doesn't fit 16 bits");
  }
  b = static_cast<unsigned char>(b ^ (product & 255U));
  // Index 0 serves the first byte of the data only: the walk goes back to index 1.
  const std::size_t next = KeyPos_ >= last ? 1 : KeyPos_ + 1;
  key = static_cast<unsigned char>(key + KeyBytes_[next]);
  KeyPos_ = next;
}

void clsEncryption::EncryptBytes(char* bytes, std::size_t count) {
  std::size_t done = 0;
  if (KeyBytes_.size() > 1 && KeyBytes_.size() <= kLongestPassword * 2) {
    while (done < count) done += EncryptPass(bytes + done, count - done);
  }
  for (; done < count; ++done) {
    auto b = static_cast<unsigned char>(bytes[done]);
    // After a failure the byte stays as far as it was processed, and the next one is tried.
    Guarded("EncryptByte", [&] { EncryptByte(b); });
    bytes[done] = static_cast<char>(b);
  }
}

std::size_t clsEncryption::EncryptPass(char* bytes, std::size_t count) {
  const std::size_t last = KeyBytes_.size() - 1;
  count = std::min(count, last + 1 - KeyPos_);
  const std::size_t withNeighbour = std::min(count, last - KeyPos_);
  std::size_t i = 0;
  const auto encryptLanes = [&]<std::size_t kLanes>(std::integral_constant<std::size_t, kLanes>) {
    for (; i + kLanes <= withNeighbour; i += kLanes) {
      EncryptLanes<kLanes>(bytes + i, KeyBytes_.data() + KeyPos_ + i, KeyPos_ + i);
    }
  };
  encryptLanes(std::integral_constant<std::size_t, 16>());
  encryptLanes(std::integral_constant<std::size_t, 4>());
  for (; i < count; ++i) {
    unsigned char& key = KeyBytes_[KeyPos_ + i];
    const auto product = static_cast<unsigned char>(key * (KeyPos_ + i));
    bytes[i] = static_cast<char>(static_cast<unsigned char>(bytes[i]) ^ key ^ product);
    key = static_cast<unsigned char>(key + KeyBytes_[i < withNeighbour ? KeyPos_ + i + 1 : 1]);
  }
  KeyPos_ = withNeighbour < count ? 1 : KeyPos_ + count;
  return count;
}

std::size_t clsEncryption::ReadFile(const File& file, std::int64_t position, std::string& buffer,
                                    std::size_t maxLength) {
  std::size_t count = 0;
  Guarded("ReadFile", [&] {
    const auto left = static_cast<std::size_t>(std::max<std::int64_t>(file.Size() - position, 0));
    const std::size_t wanted = left <= maxLength + 1 ? left : maxLength;
    buffer.resize(wanted);
    file.ReadAt(position, buffer.data(), wanted);
    count = wanted;
  });
  return count;
}

void clsEncryption::EncryptFile() {
  Guarded("EncryptFile", [&] {
    BuildKey();
    const File input = files_.OpenForReading(InputFileName);
    const std::int64_t length = input.Size();
    DeleteQuietly(files_, OutputFileName);
    File output = files_.Create(OutputFileName);
    if (FileProgress) FileProgress(0);
    std::string chunk;
    std::int64_t total = 0;
    while (const std::size_t count = ReadFile(input, total, chunk, kChunk)) {
      EncryptBytes(chunk.data(), count);
      output.WriteAt(total, chunk);
      total += static_cast<std::int64_t>(count);
      if (FileProgress) FileProgress(static_cast<float>(total) / static_cast<float>(length));
    }
    output.Close();
  });
}

std::u16string clsEncryption::EncryptString(std::u16string_view strIn) {
  std::u16string result;
  Guarded("EncryptString", [&] {
    BuildKey();
    std::string bytes = LittleEndianBytes(strIn);
    EncryptBytes(bytes.data(), bytes.size());
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      const auto low = static_cast<unsigned char>(bytes[i]);
      const auto high = static_cast<unsigned char>(bytes[i + 1]);
      result.push_back(static_cast<char16_t>(low | (high << 8U)));
    }
  });
  return result;
}
