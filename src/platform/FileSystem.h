#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The one file layer. Every path that comes in is DOS path text (see `DosPath`) and is resolved
/// here; everything that the program changes on disk goes through here.
///
/// How DOS path text maps to a POSIX file system:
/// - `Z:\` is the root. Any other drive letter is what the Wine prefix has for it under
///   `dosdevices`; without one the drive doesn't exist: nothing is found there, and every
///   operation on it fails. A path that begins with a separator starts at the root, any other
///   path without a drive at the process's current directory.
/// - `\` and `/` both separate. `.` and `..` are worked out on the text, as Windows does, and
///   `..` stops at the drive's root. Trailing dots and blanks of a component are dropped.
/// - A component matches a name on disk exactly if it can, else without regard to case by the
///   letters of Windows-1252; of several, the first in order of names. What is newly made gets
///   its name as written. Names on disk are UTF-8, with the marks of letters on them or behind
///   them (NFC, NFD); a name that isn't, or that Windows-1252 or DOS path text can't say, is never
///   found. `ToDosText` says letters that Windows-1252 lacks by their numbers ("{u418.433}"), and a
///   path may so lead to such a file, or through such a folder to others. No query of a folder's
///   files gives them.
/// - Hidden means a leading dot; a device, socket or pipe counts as a system file and is never
///   opened. A broken link, or a loop of links, is not found and can't be opened or made.
/// - A file without any write permission bit is write-protected, for root as well.
///
/// On Windows drives, the root and the current directories are the system's own, `\\server\share`
/// begins a path too, and the system looks names up; its own `\\?\` and `\\.\` forms name nothing.
/// Hidden, system file and write-protected are attributes. All else is as above.
///
/// The one name that is never found nor made is that of a `FolderLock`'s file.
///
/// Every failure is a `Failure` that names operation, path and system error.
class FileSystem;

/// Bits of a directory query's mask. Ordinary files are always found.
inline constexpr int kFindFiles = 0;
inline constexpr int kFindHidden = 2;
inline constexpr int kFindSystem = 4;
inline constexpr int kFindFolders = 16;

/// Counts the operations on disk, and makes one of them fail if told to: tests use that.
class FaultPlan {
 public:
  /// The `n`-th operation from now on (1-based) fails, and, as on a full or dead disk, each one
  /// after it too unless `once`. 0 lets everything pass.
  void FailAt(int n, bool once = false);
  /// Operations since the last `FailAt`.
  [[nodiscard]] int Count() const { return count_; }
  /// Called ahead of each operation.
  void Step(const char* operation, std::string_view path);

 private:
  int count_ = 0;
  int failAt_ = 0;
  bool once_ = false;
};

/// An open ordinary file. Offsets and lengths are bytes, 0-based. Closes itself; `Close` is for
/// those who want to hear of a late write error.
class File {
 public:
  /// Takes over an open handle of the system, which only the file layer itself has.
  File(std::intptr_t handle, std::string path, std::shared_ptr<FaultPlan> faults);
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File();

  /// Length of the file now.
  [[nodiscard]] std::int64_t Size() const;
  /// Reads exactly `length` bytes; fails if the file ends before.
  void ReadAt(std::int64_t offset, char* buffer, std::size_t length) const;
  /// The same, as a string. Checks the file's length before it allocates.
  [[nodiscard]] std::string ReadAt(std::int64_t offset, std::int64_t length) const;
  /// Reads up to `length` bytes and returns how many; 0 means the end of the file.
  std::size_t ReadSomeAt(std::int64_t offset, char* buffer, std::size_t length) const;
  /// Writes all of `bytes`; a gap before `offset` is filled with NULs.
  void WriteAt(std::int64_t offset, std::string_view bytes);
  /// The same with the bytes in parts, one behind the other, in one operation.
  void WriteAt(std::int64_t offset, const std::vector<std::string_view>& parts);
  /// Copies `length` bytes of `source`, which must not be this file, to `offset`, in large blocks
  /// or within the system. Fails if the source ends before.
  void CopyFrom(const File& source, std::int64_t sourceOffset, std::int64_t length,
                std::int64_t offset);
  /// Makes sure that the disk has room for `length` bytes from `offset` on, so that a write to
  /// them can't fail halfway for want of space; the file's length stays. Where the file system has
  /// no such operation, NULs are written behind the file's end, and what then isn't used of them is
  /// cut off when the file is closed.
  void Reserve(std::int64_t offset, std::int64_t length);
  /// Cuts the file or extends it with NULs.
  void SetSize(std::int64_t size);
  /// Lets the disk begin with `length` bytes from `offset` on, and doesn't wait for it. A hint:
  /// it can't fail, and systems without such an operation begin when they like.
  void StartWriting(std::int64_t offset, std::int64_t length);
  /// Waits until the file's content is on the disk.
  void Sync();
  void Close();
  /// The path it was opened by.
  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  static constexpr std::intptr_t kNone = -1;

  void CloseQuietly() noexcept;
  /// The length of what is on disk.
  [[nodiscard]] std::int64_t SizeOnDisk() const;
  [[nodiscard]] bool SetSizeOnDisk(std::int64_t size) const noexcept;
  void ReserveByWriting(std::int64_t end);
  void NoteWritten(std::int64_t end);
  [[noreturn]] void FailWith(const char* operation, int error) const;
  /// Fails unless the file holds `length` bytes at `offset`.
  void RequireWithin(std::int64_t offset, std::int64_t length) const;

  std::intptr_t handle_ = kNone;
  /// The file's length, where room behind it has been reserved by writing.
  std::optional<std::int64_t> length_;
  std::string path_;
  std::shared_ptr<FaultPlan> faults_;
};

/// Room on a disk.
struct Room {
  std::uint64_t volume = 0;  // tells disks apart
  std::int64_t free = 0;     // bytes
};

namespace Disk {
struct Memory;
}

/// What a `FileSystem` needs to know of the machine.
struct FileSystemOptions {
  /// The Wine prefix whose drives are seen; nothing means no drive but `Z:`. Not used on Windows.
  std::optional<std::filesystem::path> winePrefix;
  /// Nothing is changed or made: opening for writing opens for reading, all else fails.
  bool readOnly = false;

  /// WINEPREFIX, else ~/.wine if there is one.
  static FileSystemOptions FromEnvironment();
};

class FileSystem {
 public:
  explicit FileSystem(FileSystemOptions options = {});

  /// The DOS path text of a native path (made absolute first). Fails if it can't be said: on Linux
  /// if a name is no UTF-8 or holds a backslash, colon or wildcard.
  [[nodiscard]] std::string ToDosText(const std::filesystem::path& native) const;
  /// The native path of DOS path text; components that exist get their names as on disk (on
  /// Windows, the last one). Fails on a drive that doesn't exist and on text that names no file.
  [[nodiscard]] std::filesystem::path ToNative(std::string_view path) const;

  /// The directory query: the bare name, as on disk, of the first entry that matches `path`, or
  /// empty. The last component may hold wildcards. `mask` adds kinds to the ordinary files.
  /// "First" is by lower-case name, so that every machine gives the same. An empty path finds
  /// nothing; a path that ends in a separator finds what `*.*` behind it would find, and with
  /// `kFindFolders` the folder's own "." first. Never fails: what can't be looked at isn't found.
  [[nodiscard]] std::string FindFirst(std::string_view path, int mask) const;
  /// All matches of the same query, in the same order.
  [[nodiscard]] std::vector<std::string> FindAll(std::string_view path, int mask) const;

  /// Opens an existing file for reading.
  [[nodiscard]] File OpenForReading(std::string_view path) const;
  /// Opens a file for reading and writing, and creates it with length 0 if it doesn't exist. An
  /// existing one that can't be written is opened for reading alone; writing to it then fails.
  [[nodiscard]] File OpenBinary(std::string_view path) const;
  /// The same for a file that gets new content: see `WriteOnlyOwnFilesIn`.
  [[nodiscard]] File OpenForOutput(std::string_view path) const;
  /// Opens a file for writing; it is created or emptied.
  [[nodiscard]] File Create(std::string_view path) const;

  /// The content of a whole file.
  [[nodiscard]] std::string ReadWhole(std::string_view path) const;
  /// Writes a file in place so that it holds exactly `text`; created if missing. If the disk has
  /// no room, it stays as it was; if a text that gets shorter can't be written, it is left empty.
  void WriteWhole(std::string_view path, std::string_view text) const;
  /// The same with the text in parts, one behind the other.
  void WriteWhole(std::string_view path, const std::vector<std::string_view>& parts) const;
  /// Replaces a file by one that holds `text`, or, on a failure, leaves it as it was.
  void ReplaceWhole(std::string_view path, std::string_view text) const;

  /// Copies one file. An existing target is replaced, whole or not at all, and keeps its name;
  /// a write-protected one, and copying a file onto itself, is a failure. The modification time
  /// goes along. Folders aren't made on the way.
  void Copy(std::string_view from, std::string_view to) const;
  /// Deletes the file `path`, or, with wildcards in its last component, every ordinary file that
  /// matches. Nothing to delete, a folder, and a write-protected file are failures.
  void Delete(std::string_view path) const;
  /// Renames a file or folder. A target that exists is a failure, unless it is the same entry
  /// written with other case.
  void Rename(std::string_view from, std::string_view to) const;
  /// Puts `replacement` in the place of the existing file `path`, which keeps its name and its
  /// permissions: at no moment is neither the one nor the other there.
  void PutInPlace(std::string_view replacement, std::string_view path) const;
  /// Makes one folder; an existing one is a failure.
  void CreateFolder(std::string_view path) const;
  /// Removes one empty folder.
  void RemoveFolder(std::string_view path) const;

  /// From now on files in `folder` get new content only where that changes nothing elsewhere: a
  /// link that lies there, one of several names of a file and a file of another user's give way to
  /// a new file.
  void WriteOnlyOwnFilesIn(std::string_view folder) const;
  /// Removes from `folder`, and all folders below it, the half-written files of this layer's own
  /// that programs have left which were ended while they wrote. Never fails.
  void RemoveDeadHelpersBelow(std::string_view folder) const;
  /// Whether `path` lies in the existing `folder`, or is it, behind links or not. False for a path
  /// that names nothing.
  [[nodiscard]] bool LiesIn(std::string_view path, std::string_view folder) const;
  /// Whether `path` can name something on this machine, there already or not.
  [[nodiscard]] bool IsNameable(std::string_view path) const;
  /// Whether this process may write the file, or, where there is none, make it; for a folder,
  /// whether it may make files in it. Changes nothing.
  [[nodiscard]] bool MayWrite(std::string_view path) const;
  /// Room on the disk where `path` lies or would lie.
  [[nodiscard]] Room RoomAt(std::string_view path) const;
  /// Waits until all that has been changed since the last call is on the disk.
  void SyncChanges() const;

  /// For tests: where operations are counted and made to fail.
  [[nodiscard]] FaultPlan& Faults() const { return *faults_; }

 private:
  FileSystemOptions options_;
  std::shared_ptr<FaultPlan> faults_;
  std::shared_ptr<Disk::Memory> memory_;
};
