#include "platform/ChangedPaths.h"

#include <filesystem>
#include <utility>

#include "platform/Disk.h"

namespace {

void Rename(std::set<Native::NativeText>& paths, const Native::NativeText& from,
            const Native::NativeText& to) {
  std::set<Native::NativeText> renamed;
  for (const Native::NativeText& path : paths) {
    const bool isIn =
        path.starts_with(from) && (path.size() == from.size() ||
                                   path[from.size()] == std::filesystem::path::preferred_separator);
    renamed.insert(isIn ? to + path.substr(from.size()) : path);
  }
  paths = std::move(renamed);
}

}  // namespace

void ChangedPaths::NoteRename(const Native::NativeText& from, const Native::NativeText& to) {
  Rename(files_, from, to);
  Rename(folders_, from, to);
  NoteEntry(from);
  NoteEntry(to);
}

void ChangedPaths::Sync() {
  for (const Native::NativeText& file : files_) Disk::WriteOutData(file);
  // What fails is tried again at the next call, and fails again.
  for (; !files_.empty(); files_.erase(files_.begin())) Disk::SyncFile(*files_.begin());
  for (; !folders_.empty(); folders_.erase(folders_.begin())) Disk::SyncFolder(*folders_.begin());
}
