#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/DosPath.h"
#include "platform/FileSystem.h"

/// A private folder for one test, removed with all that is in it at the end. Paths below it are
/// written with slashes and in UTF-8 where they are native, with backslashes where they are DOS
/// text.
class TempFolder {
 public:
  TempFolder() : native_(MakeFolderOfOwn()), dos_(FileSystem().ToDosText(native_)) {}
  TempFolder(TempFolder&&) = delete;
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(TempFolder&&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(native_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& Native() const { return native_; }
  /// The native path of something below the folder.
  [[nodiscard]] std::filesystem::path At(std::string_view below) const {
    return native_ / std::u8string(below.begin(), below.end());
  }
  /// DOS path text of the folder, or of something below it.
  [[nodiscard]] const std::string& Dos() const { return dos_; }
  [[nodiscard]] std::string Dos(std::string_view below) const { return DosPath::Join(dos_, below); }

  /// Writes a file, and makes the folders on the way.
  void Write(std::string_view below, std::string_view content) const {
    std::filesystem::create_directories(At(below).parent_path());
    std::ofstream file(At(below), std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush()) throw std::runtime_error("can't write " + At(below).string());
  }
  /// The content of a file; "(missing)" if it can't be read.
  [[nodiscard]] std::string Read(std::string_view below) const {
    std::ifstream file(At(below), std::ios::binary);
    if (!file) return "(missing)";
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
  }
  void MakeFolder(std::string_view below) const { std::filesystem::create_directories(At(below)); }
  /// The names in a folder, in order of their bytes.
  [[nodiscard]] std::vector<std::string> List(std::string_view below = "") const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(At(below))) {
      const std::u8string name = entry.path().filename().u8string();
      names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  static std::filesystem::path MakeFolderOfOwn() {
    std::random_device random;
    while (true) {
      std::filesystem::path folder =
          std::filesystem::canonical(std::filesystem::temp_directory_path()) /
          ("kelvo-test-" + std::to_string(random()));
      if (std::filesystem::create_directory(folder)) return folder;
    }
  }

  std::filesystem::path native_;
  std::string dos_;
};
