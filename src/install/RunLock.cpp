#include "install/RunLock.h"

#include "platform/Failure.h"
#include "platform/FileSystem.h"

RunLock::RunLock(const FileSystem& files, std::string_view gameDirectory,
                 std::string_view program) {
  std::filesystem::path native;
  try {
    native = files.ToNative(gameDirectory);
  } catch (const Failure&) {
    // It names no place. The run, too, will find none.
    return;
  }
  lock_ = FolderLock::Take(native, program);
  if (lock_.WasLeft()) files.RemoveDeadHelpersBelow(gameDirectory);
}

std::optional<FolderLock::Holder> RunLock::Other() const {
  return lock_.GetState() == FolderLock::State::kTaken ? std::optional(lock_.GetHolder())
                                                       : std::nullopt;
}
