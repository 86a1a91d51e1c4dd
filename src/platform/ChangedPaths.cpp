#include "platform/ChangedPaths.h"

#include <utility>

#include "platform/Disk.h"

void ChangedPaths::Sync() {
  const std::set<Native::NativeText> files = std::exchange(files_, {});
  const std::set<Native::NativeText> folders = std::exchange(folders_, {});
  for (const Native::NativeText& file : files) Disk::WriteOutData(file);
  for (const Native::NativeText& file : files) Disk::SyncFile(file);
  for (const Native::NativeText& folder : folders) Disk::SyncFolder(folder);
}
