#include "tools/OwnTempFolder.h"

#include <random>
#include <system_error>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "tools/Report.h"

namespace {

std::string RandomName() {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device random;
  std::uniform_int_distribution<std::size_t> letter(0, kLetters.size() - 1);
  std::string name = "kvpk-";
  for (int i = 0; i < 12; ++i) name += kLetters[letter(random)];
  return name;
}

std::string Shown(const std::filesystem::path& native) {
  const std::u8string utf8 = native.u8string();
  return EngineText(std::string(utf8.begin(), utf8.end()));
}

std::filesystem::path MakeFolder() {
  const std::filesystem::path parent = std::filesystem::temp_directory_path();
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    std::filesystem::path folder = parent / RandomName();
    std::error_code error;
    if (!std::filesystem::create_directory(folder, error)) {
      if (error) Fail("making the folder ", Shown(folder), ": ", error.message());
      continue;  // somebody has that name already
    }
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    return folder;
  }
  Fail("making a temporary folder in ", Shown(parent), ": no free name");
}

}  // namespace

OwnTempFolder::OwnTempFolder(const FileSystem& files) : native_(MakeFolder()) {
  try {
    dosPath_ = files.ToDosText(native_);
  } catch (const Failure&) {
    std::error_code ignored;
    std::filesystem::remove_all(native_, ignored);
    throw;
  }
}

OwnTempFolder::~OwnTempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(native_, ignored);
}
