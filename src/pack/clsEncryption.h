#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class File;
class FileSystem;

/// The byte stream cipher of the pack index. It is its own inverse: enciphering twice with one
/// pass phrase gives the plain text back. The output is as long as the input and has no header.
///
/// The key is the pass phrase as UTF-16 little-endian bytes, zero bytes included. It changes with
/// every byte processed, but never by the data.
///
/// Each procedure catches its own failures, shows them through `MessageBox` and ends.
class clsEncryption {
 public:
  explicit clsEncryption(const FileSystem& files) : files_(files) {}

  std::string InputFileName;   // DOS path text
  std::string OutputFileName;  // DOS path text
  std::string Password;        // engine text

  /// Raised by `EncryptFile` with the fraction done, 0 to 1.
  std::function<void(float fraction)> FileProgress;
  /// Shows a failure: "Error: " + number + ". " + description, titled with the procedure's name.
  std::function<void(const std::string& text, const std::string& title)> MessageBox;

  /// Runs the cipher over `InputFileName`, which must exist, into `OutputFileName`, which is
  /// replaced.
  void EncryptFile();
  /// Runs the cipher over the UTF-16 little-endian bytes of a text; empty if it failed.
  std::u16string EncryptString(std::u16string_view strIn);

  /// The pass phrase of every pack's index.
  static const std::string& IndexPassword();
  /// The longest pass phrase, in characters, that the cipher's 16-bit arithmetic can take.
  static constexpr std::size_t kLongestPassword = 64;

 private:
  template <typename Body>
  bool Guarded(const char* procedure, Body&& body);
  void BuildKey();
  void EncryptByte(unsigned char& b);
  void EncryptBytes(char* bytes, std::size_t count);
  /// `EncryptByte` over the bytes up to the walk's next return to the start of the key, for keys
  /// that fit the 16-bit arithmetic; returns how many. Bytes of one pass don't wait for another.
  std::size_t EncryptPass(char* bytes, std::size_t count);
  std::size_t ReadFile(const File& file, std::int64_t position, std::string& buffer,
                       std::size_t maxLength);

  const FileSystem& files_;
  std::vector<unsigned char> KeyBytes_;
  std::size_t KeyPos_ = 0;
};
