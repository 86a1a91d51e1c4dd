#include "pack/clsIMGtool.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>

#include "pack/ArchiveFormat.h"
#include "pack/BlockWriter.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/WantedStop.h"

namespace {

using namespace ArchiveFormat;

// Archives are walked with 16-bit counters.
constexpr std::size_t kLongestSearch = 32767;
constexpr std::int64_t kBlock = BlockWriter::kBlock;  // of records
constexpr std::int64_t kRecordsPerRead = kBlock / kRecordSize;
constexpr std::size_t kMostFindings = 20;  // that a message names

/// What is wrong with a record whose data doesn't lie in the file's `length` bytes; `number` is
/// 1-based.
std::string Misfit(const Record& record, std::size_t number, std::int64_t length) {
  return Concat("record ", number, ", \"", record.Name(), "\", has ", record.size, " bytes at ",
                record.offset, ", which don't lie in the file's ", length, " bytes");
}

/// Whether the record of that index is the one that `RemoveFile` finds by its name.
bool IsFirstOfItsName(std::string_view directory, std::size_t index) {
  const std::string_view name = RecordAt(directory, index).Name();
  for (std::size_t i = 0; i <= index; ++i) {
    if (HasName(directory.substr(i * kRecordSize, kRecordSize), name)) return i == index;
  }
  return false;
}

/// What a rebuild says of a directory with records whose data doesn't lie in the file: which they
/// are, and how to take those out that can be told by their names.
std::string Misfits(std::string_view directory, std::int64_t length) {
  std::string findings;
  std::string names;
  std::size_t count = 0;
  for (std::size_t i = 0; i < RecordCount(directory); ++i) {
    const Record record = RecordAt(directory, i);
    if (record.LiesIn(length) || ++count > kMostFindings) continue;
    findings += (findings.empty() ? "" : "; ") + Misfit(record, i + 1, length);
    if (record.offset < 0 || !IsFirstOfItsName(directory, i)) continue;
    names += " \"" + std::string(record.Name()) + "\"";
  }
  if (count > kMostFindings) findings += Concat("; and ", count - kMostFindings, " more");
  if (!names.empty()) findings += "; \"kvpk remove\" takes them out:" + names;
  return findings;
}

/// Checked data of an entry; what its last sector lacks at the end of the file are NULs.
std::string ReadSectors(const File& archive, std::int64_t offset, std::int64_t size) {
  std::string data(static_cast<std::size_t>(size), '\0');
  archive.ReadSomeAt(offset, data.data(), data.size());
  return data;
}

bool HasMagic(const File& archive) {
  std::array<char, 4> magic{};
  return archive.ReadSomeAt(0, magic.data(), magic.size()) == magic.size() &&
         std::string_view(magic.data(), magic.size()) == kMagic;
}

/// The record count in an archive's header; fails if such a directory can't lie in the file.
std::int64_t ReadCount(const File& archive, std::int64_t smallest) {
  const auto count =
      static_cast<std::int64_t>(clsIMGtool::BytesToNumber(archive.ReadAt(kCountOffset, 4)));
  if (count < smallest || kHeaderSize + count * kRecordSize > archive.Size()) {
    FailOn(archive.Path(), "a directory of ", count, " records doesn't lie in the file's ",
           archive.Size(), " bytes");
  }
  return count;
}

/// The bare name of the file that `AddFile` takes, as the file system reports it.
std::string BareName(const FileSystem& files, const std::string& path) {
  std::string name = files.FindFirst(path, kFindHidden | kFindSystem);
  if (!name.empty()) return name;
  name = path.substr(path.find_last_of("\\/:") + 1);
  return name.substr(0, name.find_last_not_of(". ") + 1);  // as the file will be called
}

/// Deletes a file as far as that can be done.
void DeleteQuietly(const FileSystem& files, const std::string& path) {
  try {
    files.Delete(path);
  } catch (const Failure&) {
    return;  // what led here is what counts
  }
}

/// Fills an archive that ends inside a sector up to the sector's `end`.
void PadTo(File& archive, std::int64_t end) {
  if (archive.Size() != end) archive.SetSize(end);
}

/// The records that `Load` counts in the order in which they are the lowest: by offset, and of
/// several with one offset the last first.
std::vector<std::size_t> RecordsByOffset(std::string_view directory) {
  std::vector<std::size_t> order(RecordCount(directory));
  std::iota(order.rbegin(), order.rend(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
    return RecordAt(directory, left).offset < RecordAt(directory, right).offset;
  });
  return order;
}

/// Where a record stands in its file (0-based), and the offset of its data.
struct FoundRecord {
  std::int64_t position;
  std::int64_t offset;
};

/// The first of an archive's `count` records whose name equals `name` without regard to case.
std::optional<FoundRecord> FindRecord(const File& archive, std::int64_t count,
                                      std::string_view name) {
  if (name.find('\0') != std::string_view::npos) return std::nullopt;
  const std::int64_t end = kHeaderSize + count * kRecordSize;
  std::string block(static_cast<std::size_t>(kBlock), '\0');
  for (std::int64_t start = kHeaderSize; start < end; start += kBlock) {
    const auto length = static_cast<std::size_t>(std::min(kBlock, end - start));
    archive.ReadAt(start, block.data(), length);
    const std::string_view records = std::string_view(block).substr(0, length);
    for (std::size_t i = 0; i < records.size(); i += kRecordSize) {
      if (!HasName(records.substr(i, kRecordSize), name)) continue;
      return FoundRecord{start + static_cast<std::int64_t>(i),
                         RecordAt(records, i / kRecordSize).offset};
    }
  }
  return std::nullopt;
}

/// Takes the record at `position` out of the directory region that ends at `regionEnd`: all
/// behind it moves down by one slot, what lies in the free space too, and the last slot gets NULs.
void CloseGap(File& archive, std::int64_t position, std::int64_t regionEnd) {
  const std::int64_t lastSlot = regionEnd - kRecordSize;
  std::string block(static_cast<std::size_t>(kBlock), '\0');
  while (position < lastSlot) {
    const auto length = static_cast<std::size_t>(std::min(kBlock, lastSlot - position));
    archive.ReadAt(position + kRecordSize, block.data(), length);
    archive.WriteAt(position, std::string_view(block).substr(0, length));
    position += static_cast<std::int64_t>(length);
  }
  archive.WriteAt(lastSlot, std::string(kRecordSize, '\0'));
}

}  // namespace

double clsIMGtool::BytesToNumber(std::string_view fourBytes) {
  return NumberAt(fourBytes, 0);
}

std::string clsIMGtool::NumberToBytes(double number) {
  return NumberField(number);
}

void clsIMGtool::SetIMGFile(std::string path) {
  imgFile_ = std::move(path);
  Load("");
}

void clsIMGtool::NoteRecord(std::int64_t offset) {
  if (static_cast<double>(offset) <= lowestOffset_) {
    lowestOffset_ = static_cast<double>(offset);
    lowestEntryPos_ = nextEntryPos_;
  }
  nextEntryPos_ += kRecordSize;
}

bool clsIMGtool::Load(const std::string& strFile) {
  if (!strFile.empty()) imgFile_ = strFile;
  const File archive = files_.OpenBinary(imgFile_);
  if (!HasMagic(archive)) return false;

  entryCount_ = BytesToNumber(archive.ReadAt(kCountOffset, 4));
  nextEntryPos_ = kHeaderSize + 1;
  lowestOffset_ = static_cast<double>(archive.Size());
  const std::int64_t count = ReadCount(archive, 1);
  entries_.clear();
  entries_.reserve(static_cast<std::size_t>(count));
  for (std::int64_t first = 0; first < count; first += kRecordsPerRead) {
    const std::int64_t number = std::min(kRecordsPerRead, count - first);
    LoadRecords(archive.ReadAt(kHeaderSize + first * kRecordSize, number * kRecordSize));
  }
  return true;
}

void clsIMGtool::LoadRecords(std::string_view directory) {
  for (std::size_t i = 0; i < RecordCount(directory); ++i) {
    const Record record = RecordAt(directory, i);
    for (const std::int64_t bytes : {record.offset, record.size}) {
      if (bytes > kLargestPosition || bytes < kSmallestPosition) {
        Refuse("record ", entries_.size() + 1, " has ", record.size, " bytes at ", record.offset,
               ", which is out of 32-bit range");
      }
    }
    entries_.push_back({std::string(record.Name()), static_cast<std::int32_t>(record.offset),
                        static_cast<std::int32_t>(record.size)});
    NoteRecord(record.offset);
  }
}

const udtIMGEntry* clsIMGtool::FindEntry(std::string_view name) const {
  if (imgFile_.empty()) return nullptr;
  if (entries_.size() > kLongestSearch) {
    Refuse(entries_.size(), " records are more than the ", kLongestSearch, " that can be searched");
  }
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const udtIMGEntry& entry) { return entry.Name == name; });
  return found == entries_.end() ? nullptr : &*found;
}

bool clsIMGtool::ExistsInIMG(std::string_view strName) const {
  return FindEntry(strName) != nullptr;
}

bool clsIMGtool::Export(std::string_view strName, const std::string& strDestination) const {
  const udtIMGEntry* const entry = FindEntry(strName);
  if (entry == nullptr) return false;
  const File archive = files_.OpenForReading(imgFile_);
  const std::int64_t length = archive.Size();
  const std::int64_t offset = entry->Offset;
  const std::int64_t size = entry->Size;
  if (offset < 0 || size < 0 || offset + size > WholeSectors(length)) {
    Refuse("record ", entry - entries_.data() + 1, " has ", size, " bytes at ", offset,
           ", which don't lie in the file's ", length, " bytes");
  }
  File destination = files_.OpenForOutput(strDestination);
  // What the last sector lacks at the end of the file are NULs.
  const std::int64_t there = std::clamp<std::int64_t>(length - offset, 0, size);
  destination.CopyFrom(archive, std::min(offset, length), there, 0);
  if (there < size)
    destination.WriteAt(there, std::string(static_cast<std::size_t>(size - there), '\0'));
  destination.Close();
  return true;
}

void clsIMGtool::FindLowestRecord(std::string_view directory, std::int64_t fileLength) {
  lowestOffset_ = static_cast<double>(fileLength);
  nextEntryPos_ = kHeaderSize + 1;
  for (std::size_t i = 0; i < RecordCount(directory); ++i) {
    NoteRecord(RecordAt(directory, i).offset);
  }
}

clsIMGtool::Payload clsIMGtool::ReadPayload(const std::string& path) const {
  std::string name = BareName(files_, path);
  if (name.size() >= kNameSize) {
    Refuse("the name \"", name, "\" has ", name.size(), " bytes, a record takes ", kNameSize - 1);
  }
  const File source = files_.OpenBinary(path);
  CheckEnd(source.Size());
  return {std::move(name), ReadSectors(source, 0, WholeSectors(source.Size()))};
}

void clsIMGtool::AddFile(const std::string& strFile) {
  const Payload payload = ReadPayload(strFile);
  File archive = files_.OpenBinary(imgFile_);
  AppendEntry(archive, payload);
}

void clsIMGtool::ReplaceFile(std::string_view strName, const std::string& strFile) {
  const Payload payload = ReadPayload(strFile);
  File archive = files_.OpenBinary(imgFile_);
  const std::int64_t end = ReserveEnd(archive, payload.Size());
  if (!TakeOut(archive, strName)) return AppendEntry(archive, payload);
  // The old record has left a slot, so nothing needs to move.
  WriteEntry(archive, end, payload);
  archive.Close();
  nextEntryPos_ += kRecordSize;
  entryCount_ += 1;
}

void clsIMGtool::AppendEntry(File& archive, const Payload& payload) {
  const bool moved = MakeRoomForRecord(archive);
  WriteEntry(archive, ReserveEnd(archive, payload.Size()), payload);
  archive.Close();
  if (moved) {
    Load("");
  } else {
    nextEntryPos_ += kRecordSize;
    entryCount_ += 1;
  }
}

void clsIMGtool::WriteEntry(File& archive, std::int64_t end, const Payload& payload) const {
  PadTo(archive, end);
  // What stood in the slot behind the name's NUL stays there.
  archive.WriteAt(static_cast<std::int64_t>(nextEntryPos_) - 1,
                  SectorField(end) + SectorField(payload.Size()) + payload.name + '\0');
  archive.WriteAt(kCountOffset, NumberToBytes(entryCount_ + 1));
  archive.WriteAt(end, payload.data);
}

void clsIMGtool::CheckEnd(std::int64_t end) const {
  if (end > kLargestPosition) {
    Refuse("it would grow to ", end, " bytes, more than 2 GiB");
  }
}

bool clsIMGtool::MakeRoomForRecord(File& archive) {
  const double needed = nextEntryPos_ + kRecordSize;
  if (needed <= lowestOffset_) return false;
  const std::string directory =
      archive.ReadAt(kHeaderSize, static_cast<std::int64_t>(entryCount_) * kRecordSize);
  // What moves goes to the end of the file, so the end itself must lie behind the new record.
  if (needed > static_cast<double>(WholeSectors(archive.Size()))) AppendEmptySector(archive);

  // One move is enough, unless the lowest entry is empty or shares its offset with others.
  for (const std::size_t index : RecordsByOffset(directory)) {
    const Record record = RecordAt(directory, index);
    if (needed <= static_cast<double>(record.offset)) break;
    if (!record.LiesIn(archive.Size())) Refuse(Misfit(record, index + 1, archive.Size()));
    const std::string data = ReadSectors(archive, record.offset, record.size);
    const std::int64_t end = ReserveEnd(archive, record.size);
    PadTo(archive, end);
    archive.WriteAt(kHeaderSize + static_cast<std::int64_t>(index) * kRecordSize, SectorField(end));
    archive.WriteAt(end, data);  // its old place is dead from here on
  }
  return true;
}

std::int64_t clsIMGtool::ReserveEnd(File& archive, std::int64_t size) const {
  const std::int64_t end = WholeSectors(archive.Size());
  CheckEnd(end + size);
  // Records go to disk ahead of the data, so see to it first that there is room for both.
  archive.Reserve(end, size);
  return end;
}

void clsIMGtool::AppendEmptySector(File& archive) const {
  archive.SetSize(ReserveEnd(archive, kSector) + kSector);
}

void clsIMGtool::RemoveFile(std::string_view strName) {
  File archive = files_.OpenBinary(imgFile_);
  if (TakeOut(archive, strName)) archive.Close();
}

bool clsIMGtool::TakeOut(File& archive, std::string_view strName) {
  const auto regionEnd = static_cast<std::int64_t>(lowestOffset_);
  const auto directorySize = static_cast<std::int64_t>(entryCount_) * kRecordSize;
  if (regionEnd < kHeaderSize + directorySize) {
    Refuse("the data of an entry at ", regionEnd, " begins inside the directory of ", directorySize,
           " bytes");
  }
  const auto found = FindRecord(archive, directorySize / kRecordSize, strName);
  if (!found) return false;
  const bool wasLowest = static_cast<double>(found->offset) <= lowestOffset_;
  // What remains is only needed to find the lowest anew.
  std::string directory;
  if (wasLowest) {
    directory = archive.ReadAt(kHeaderSize, directorySize);
    directory.erase(static_cast<std::size_t>(found->position - kHeaderSize), kRecordSize);
  }

  archive.WriteAt(kCountOffset, NumberToBytes(entryCount_ - 1));
  CloseGap(archive, found->position, regionEnd);
  entryCount_ -= 1;
  if (wasLowest) {
    FindLowestRecord(directory, archive.Size());
  } else {
    nextEntryPos_ -= kRecordSize;
    if (lowestEntryPos_ > static_cast<double>(found->position) + 1) lowestEntryPos_ -= kRecordSize;
  }
  return true;
}

bool clsIMGtool::RebuildIMG(const std::string& strFile) {
  const std::string path = strFile.empty() ? imgFile_ : strFile;
  const std::string temporary = path + ".tmp";
  if (!HasMagic(files_.OpenBinary(path))) {
    imgFile_ = path;
    return false;
  }
  try {
    Rebuild(path, temporary);
  } catch (const WantedStop&) {
    DeleteQuietly(files_, temporary);
    throw;
  }
  files_.PutInPlace(temporary, path);
  return Load(path);
}

void clsIMGtool::Rebuild(const std::string& path, const std::string& temporary) const {
  const File source = files_.OpenBinary(path);
  const std::int64_t count = ReadCount(source, 0);
  File target = files_.OpenBinary(temporary);
  CopyEntries(source, target, count);
  // The sync of the one file would have the disk take note of others, whose data isn't there yet.
  files_.SyncChanges();
  target.Sync();
  target.Close();
}

void clsIMGtool::CopyEntries(const File& source, File& target, std::int64_t count) const {
  constexpr std::int64_t kStart = 128 * BlockWriter::kBlock;
  std::int64_t position = WholeSectors(kHeaderSize + 1 + count * kRecordSize);
  std::string head = source.ReadAt(0, kHeaderSize);
  const std::string directory = source.ReadAt(kHeaderSize, count * kRecordSize);
  const std::int64_t length = source.Size();
  BlockWriter writer(target, position);
  std::int64_t started = 0;
  for (std::int64_t i = 0; i < count; ++i) {
    const Record record = RecordAt(directory, static_cast<std::size_t>(i));
    if (!record.LiesIn(length)) FailOn(source.Path(), Misfits(directory, length));
    writer.Append(source, record.offset, record.size);
    // The disk works while more is copied, so that the sync at the end has little to wait for.
    if (writer.Written() - started >= kStart) {
      target.StartWriting(started, writer.Written() - started);
      started = writer.Written();
    }
    head += SectorField(position);
    head += record.sizeField;
    head += record.nameField;  // what stands behind its NUL goes along
    position += record.size;
    CheckEnd(position);
    if (RebuildProgress) RebuildProgress(static_cast<double>(i + 1), static_cast<double>(count));
    if (DoEvents) DoEvents();
  }
  writer.Flush();
  // The rest of the directory's last sector holds NULs.
  head.resize(static_cast<std::size_t>(WholeSectors(kHeaderSize + 1 + count * kRecordSize)));
  target.WriteAt(0, head);
}
