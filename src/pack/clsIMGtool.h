#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "pack/ArchiveFormat.h"
#include "pack/dclUDTs.h"

class File;
class FileSystem;

/// IMG archives: the game's own and mod packs, which are archives of the same form
/// (see `ArchiveFormat`).
///
/// Paths are DOS path text. An archive's file is open within one operation only. Nothing is
/// caught here: every failure is a `Failure` that names the archive.
class clsIMGtool {
 public:
  explicit clsIMGtool(const FileSystem& files) : files_(files) {}

  /// Raised by `RebuildIMG` after each entry with its 1-based position and their number.
  std::function<void(double lngPosition, double lngCount)> RebuildProgress;
  /// Lets pending window events run; called by `RebuildIMG` after each entry.
  std::function<void()> DoEvents;

  /// The archive's path; empty until the first `Load`.
  [[nodiscard]] const std::string& IMGFile() const { return imgFile_; }
  /// Takes a path and loads it; the result of `Load` is dropped.
  void SetIMGFile(std::string path);
  /// Number of records on disk as this object knows it: follows `AddFile` and `RemoveFile`.
  [[nodiscard]] double EntryCount() const { return entryCount_; }
  /// 1-based file position at which the next record goes.
  [[nodiscard]] double NextEntryPos() const { return nextEntryPos_; }
  /// Lowest data offset of all entries in bytes, 0-based; the file's length without entries.
  [[nodiscard]] double LowestOffset() const { return lowestOffset_; }
  /// 1-based file position of the record with `LowestOffset` (the last of several).
  [[nodiscard]] double LowestEntryPos() const { return lowestEntryPos_; }
  /// The directory as of the last `Load`; `AddFile` and `RemoveFile` leave it alone.
  [[nodiscard]] const std::vector<udtIMGEntry>& Entries() const { return entries_; }

  /// Reads the directory of `strFile`; empty means `IMGFile`. A file that doesn't exist is made,
  /// empty. False if the file doesn't begin with the magic: the directory in memory stays, while
  /// `IMGFile` names the new path already. Fails on a record count below 1 or beyond the file's
  /// length, and on an offset or size of 2 GiB or more.
  bool Load(const std::string& strFile);

  /// Whether the directory as of the last `Load` has an entry of exactly that name. Fails on an
  /// archive of more than 32,767 records.
  [[nodiscard]] bool ExistsInIMG(std::string_view strName) const;

  /// Writes the data of the first entry of exactly that name to the start of `strDestination`,
  /// whole sectors; a longer file keeps its tail. False, and nothing touched, if there is none.
  /// Fails on an archive of more than 32,767 records.
  // The callers by design don't look at the result. NOLINTNEXTLINE(modernize-use-nodiscard)
  bool Export(std::string_view strName, const std::string& strDestination) const;

  /// Appends a file as a new entry under its bare name; an entry of that name may exist. One
  /// record and the data are written; only if the directory has no room left, the entry with the
  /// lowest offset moves to the end first, and the directory is loaded anew. A file that doesn't
  /// exist is made, empty. Fails, before it writes, on a name of 24 bytes or more.
  void AddFile(const std::string& strFile);

  /// Takes the first record whose name equals `strName` without regard to case out of the
  /// directory; the data stays in the file, dead. Nothing happens if there is none.
  void RemoveFile(std::string_view strName);

  /// `RemoveFile` of `strName`, then `AddFile` of `strFile`. The file is read and the room for it
  /// reserved first: a full disk, or an archive that is full, loses no entry.
  void ReplaceFile(std::string_view strName, const std::string& strFile);

  /// Writes the archive anew without gaps and dead data and puts it in the old one's place, by
  /// way of `strFile` + ".tmp"; then loads it. Empty means `IMGFile`. Returns what `Load`
  /// returns; false, and nothing changed, if the file doesn't begin with the magic. A failure
  /// leaves the archive as it was and the ".tmp" behind; a wanted stop leaves no ".tmp".
  bool RebuildIMG(const std::string& strFile);

  /// Four bytes, least significant first, as a 32-bit signed number.
  static double BytesToNumber(std::string_view fourBytes);
  /// The inverse: rounds to the nearest whole number, ties to even; fails out of 32-bit range.
  static std::string NumberToBytes(double number);

 private:
  /// A file to become an entry.
  struct Payload {
    std::string name;
    std::string data;  // whole sectors

    [[nodiscard]] std::int64_t Size() const { return static_cast<std::int64_t>(data.size()); }
  };
  [[nodiscard]] Payload ReadPayload(const std::string& path) const;
  /// Adds the payload as a new entry behind all others, and closes the archive.
  void AppendEntry(File& archive, const Payload& payload);
  /// Writes the next record, the count, and the data at the archive's `end`.
  void WriteEntry(File& archive, std::int64_t end, const Payload& payload) const;
  /// Takes the first record of that name out; false, and nothing changed, if there is none.
  bool TakeOut(File& archive, std::string_view strName);
  [[nodiscard]] const udtIMGEntry* FindEntry(std::string_view name) const;
  void LoadRecords(std::string_view directory);
  /// Takes note of the record at `nextEntryPos_`, whose data is at `offset`, and goes behind it.
  void NoteRecord(std::int64_t offset);
  /// Works out positions and lowest offset anew from the records on disk.
  void FindLowestRecord(std::string_view directory, std::int64_t fileLength);
  void CheckEnd(std::int64_t end) const;
  /// Sees to it that a record fits behind the last one; true if the archive was changed.
  bool MakeRoomForRecord(File& archive);
  void AppendEmptySector(File& archive) const;
  /// Makes sure of room for `size` bytes behind the archive's last sector, and returns its end.
  std::int64_t ReserveEnd(File& archive, std::int64_t size) const;
  void Rebuild(const std::string& path, const std::string& temporary) const;
  void CopyEntries(const File& source, File& target, std::int64_t count) const;
  /// Fails with the archive's path and what is wrong with it.
  template <typename... Parts>
  [[noreturn]] void Refuse(const Parts&... parts) const {
    ArchiveFormat::FailOn(imgFile_, parts...);
  }

  const FileSystem& files_;
  std::string imgFile_;
  std::vector<udtIMGEntry> entries_;
  double entryCount_ = 0;
  double nextEntryPos_ = 0;
  double lowestOffset_ = 0;
  double lowestEntryPos_ = 0;
};
