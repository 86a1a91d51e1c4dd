#include "tools/OwnTempFolder.h"

#include <chrono>
#include <string_view>
#include <system_error>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"

namespace {

std::filesystem::path PlaceForTempFiles() {
  std::error_code error;
  std::filesystem::path place = std::filesystem::temp_directory_path(error);
  if (error) Fail("the folder for temporary files that TMPDIR names: ", error.message());
  return place;
}

constexpr std::string_view kPrefix = "kvpk-";

// Removes a folder whose maker doesn't live any more: one that is locked no longer. One without a
// lock may have been made at this moment, and isn't looked at before it has lain there for long.
void RemoveIfDead(const std::filesystem::path& folder) {
  constexpr std::chrono::hours kLong(1);
  std::error_code error;
  if (!std::filesystem::exists(folder / FolderLock::kFileName, error)) {
    const auto made = std::filesystem::last_write_time(folder, error);
    if (!error && made + kLong < std::filesystem::file_time_type::clock::now())
      std::filesystem::remove(folder, error);  // if it is empty
    return;
  }
  FolderLock lock = FolderLock::Take(folder, "kvpk");
  if (!lock.WasLeft()) return;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    if (entry.path().filename() != FolderLock::kFileName)
      std::filesystem::remove_all(entry.path(), error);
  lock.Release();
  std::filesystem::remove(folder, error);
}

void RemoveDeadOnes(const std::filesystem::path& place) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(place, error)) {
    const bool isNamedSo = entry.path().filename().string().starts_with(kPrefix);
    if (isNamedSo && Process::IsPrivateFolder(entry.path())) RemoveIfDead(entry.path());
  }
}

std::filesystem::path MakeFolder() {
  const std::filesystem::path place = PlaceForTempFiles();
  RemoveDeadOnes(place);
  return Process::MakePrivateFolder(place, std::string(kPrefix));
}

}  // namespace

OwnTempFolder::OwnTempFolder(const FileSystem& files)
    : native_(MakeFolder()), lock_(FolderLock::Take(native_, "kvpk")) {
  try {
    dosPath_ = files.ToDosText(native_);
  } catch (const Failure&) {
    std::error_code ignored;
    lock_.Release();
    std::filesystem::remove_all(native_, ignored);
    throw;
  }
}

OwnTempFolder::~OwnTempFolder() {
  std::error_code ignored;
  lock_.Release();
  std::filesystem::remove_all(native_, ignored);
}
