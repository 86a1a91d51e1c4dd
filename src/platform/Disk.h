#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "Place.h"
#include "platform/ChangedPaths.h"
#include "platform/FileSystem.h"

/// What `FileSystem` asks of the system. Its rules stand in FileSystemCommon.cpp; how each system
/// goes about them stands in the Disk.cpp of its folder.
///
/// The `Place.h` of either folder has what this needs to know of the system: `Native` is its
/// namespace, with `Place`, `SystemError` (0 is success), and the numbers for what is refused.
namespace Disk {

using Native::FolderEntry;
using Native::NativeText;
using Native::Permissions;
using Native::Place;
using Native::SystemError;

/// What a `FileSystem` keeps in mind from one operation to the next.
struct Memory {
  /// Folders that have been rid of dead helpers.
  std::set<NativeText> tidied;
  /// The folder in which nothing of others' is written to; empty if there is none.
  NativeText ownFilesOnly;
  ChangedPaths changed;
};

enum class Access {
  kRead,
  kReadAndWrite,
  kReadAndWriteEmptied,
  kAsAllowed,  ///< for reading and writing, or, where only that is allowed, for reading alone
};

/// Opens the file at `place`, or creates it if nothing is there.
File Open(const char* operation, std::string_view path, const Place& place, Access access,
          const std::shared_ptr<FaultPlan>& faults);

/// Whether a query's mask has what stands at a place, or in a folder.
bool FitsMask(const Place& place, int mask);
bool FitsMask(const FolderEntry& entry, int mask);

/// Whether two places are one file, behind all links.
bool IsSameFile(const Place& left, const Place& right);
/// Whether two places are one entry of a folder, perhaps written with other case. A second link of
/// a file is no such thing.
bool IsSameEntry(const Place& left, const Place& right);

/// Fails if an ordinary file in `folder` is write-protected.
void RequireNoProtection(const char* operation, std::string_view path, const Place& folder,
                         const FolderEntry& entry);

/// The permissions that a copy of the file at `place` gets.
Permissions PermissionsForCopyOf(const Place& place);
/// The path of the file itself, behind all links.
NativeText RealPathOf(const char* operation, std::string_view path, const Place& place);

SystemError MakeFolder(const NativeText& native);
SystemError RemoveEmptyFolder(const NativeText& native);
/// Removes one name of an ordinary file.
SystemError RemoveFile(const NativeText& native);
/// The same for a file that we have made, as far as it can be done.
void RemoveQuietly(const NativeText& native) noexcept;
/// Whether writing to what stands at a place changes something elsewhere, or of another user's: a
/// link, one of several names of a file, another owner's file.
bool IsOthersToo(const Place& place);

/// The number of this process, and whether one of this number runs.
std::int64_t OwnProcess();
bool IsRunning(std::int64_t process);
/// The name of the `number`-th helper file of this process in a folder.
std::string HelperName(int number);
/// Rids a folder of helpers that processes have left which don't run any more: what an operation
/// that was cut off has written. Called ahead of the first helper of our own there.
void RemoveDeadHelpersIn(const NativeText& folder);
/// Gives the entry at `source` the name as which `target`, of the path `to`, is written: either
/// nothing has that name, or the entry itself.
SystemError RenameEntry(const Place& source, const Place& target, std::string_view to);
/// Moves a file over another one, whose permissions it takes over.
SystemError MoveOnto(const char* operation, std::string_view path, const Place& source,
                     const Place& target);

/// Has the system write the file's data out, and waits for that, but not for the file system's own
/// notes about it. Does nothing where there is no such operation, or no such file.
void WriteOutData(const NativeText& native);
/// Waits until the disk has all of the file; does nothing if there is none.
void SyncFile(const NativeText& native);
/// Waits until the disk has the folder's entries, as far as the file system can tell.
void SyncFolder(const NativeText& native);

/// Number of the volume that the existing file or folder lies on.
std::uint64_t VolumeOf(const NativeText& native);
/// Whether this process may make files in the existing folder.
bool MayMakeFilesIn(const NativeText& native);

/// A new file that is deleted again unless it is kept.
class HelperFile {
 public:
  explicit HelperFile(NativeText native) : native_(std::move(native)) {}
  HelperFile(HelperFile&&) = delete;
  HelperFile(const HelperFile&) = delete;
  HelperFile& operator=(HelperFile&&) = delete;
  HelperFile& operator=(const HelperFile&) = delete;
  ~HelperFile() {
    if (!native_.empty()) RemoveQuietly(native_);
  }
  void Keep() { native_.clear(); }

 private:
  NativeText native_;
};

/// A file that is written beside its place and then takes it, whole or not at all.
class Successor {
 public:
  /// `place` is where the file goes; `permissions` count if nothing is there.
  Successor(const char* operation, std::string_view path, const Place& place,
            Permissions permissions, std::shared_ptr<FaultPlan> faults, Memory& memory)
      : operation_(operation),
        path_(path),
        place_(place),
        permissions_(permissions),
        target_(RealPathOf(operation, path, place)),
        faults_(std::move(faults)),
        content_(MakeInTidyFolder(memory)),
        unfinished_(native_) {}

  [[nodiscard]] File& Content() { return content_; }
  /// Gives it the modification time of `source`, of the path `from`. The content must have been
  /// closed.
  void TakeTimeOf(std::string_view from, const Place& source);
  /// The content must have been closed.
  void TakePlace();
  /// The path of the file itself, behind all links.
  [[nodiscard]] const NativeText& Target() const { return target_; }

 private:
  // Makes the file, under a name that no one else uses, hidden so that no script sees it.
  File Make();
  File MakeInTidyFolder(Memory& memory);

  const char* operation_;
  std::string path_;
  const Place& place_;
  Permissions permissions_;
  NativeText target_;
  std::shared_ptr<FaultPlan> faults_;
  NativeText native_;
  File content_;
  HelperFile unfinished_;
};

}  // namespace Disk
