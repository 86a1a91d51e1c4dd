#include "tools/OwnTempFolder.h"

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

}  // namespace

OwnTempFolder::OwnTempFolder(const FileSystem& files)
    : native_(Process::MakePrivateFolder(PlaceForTempFiles(), "kvpk-")) {
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
