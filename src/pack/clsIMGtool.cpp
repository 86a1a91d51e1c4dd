#include "pack/clsIMGtool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

constexpr std::string_view kMagic = "VER2";
constexpr std::int64_t kSector = 2048;
constexpr std::int64_t kHeaderSize = 8;
constexpr std::int64_t kCountOffset = 4;
constexpr std::int64_t kRecordSize = 32;
constexpr std::size_t kNameSize = 24;
// Archives are walked with 16-bit counters, and positions in them are 32-bit signed.
constexpr std::size_t kLongestSearch = 32767;
constexpr std::int64_t kLargestPosition = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kSmallestPosition = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kBlock = 65536;  // of records or data: what stays in a processor's cache
constexpr std::int64_t kRecordsPerRead = kBlock / kRecordSize;

std::int64_t WholeSectors(std::int64_t bytes) {
  return (bytes + kSector - 1) / kSector * kSector;
}

std::int32_t NumberAt(std::string_view bytes, std::size_t offset) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;) {
    number = (number << 8U) | static_cast<unsigned char>(bytes[offset + i]);
  }
  return static_cast<std::int32_t>(number);
}

/// A directory record as it stands in the file. The name keeps what stands behind its NUL.
struct Record {
  explicit Record(std::string_view bytes)
      : offset(NumberAt(bytes, 0) * kSector),
        size(NumberAt(bytes, 4) * kSector),
        sizeField(bytes.substr(4, 4)),
        nameField(bytes.substr(8, kNameSize)) {}

  [[nodiscard]] std::string_view Name() const { return nameField.substr(0, nameField.find('\0')); }

  std::int64_t offset;  // bytes
  std::int64_t size;    // bytes
  std::string_view sizeField;
  std::string_view nameField;
};

Record RecordAt(std::string_view directory, std::size_t index) {
  return Record(directory.substr(index * kRecordSize, kRecordSize));
}

[[noreturn]] void FailOnRecord(const std::string& archive, std::int64_t number,
                               const std::string& what) {
  Fail("archive \"", archive, "\": record ", number, " ", what);
}

/// Checks that an entry's data lies in a file of `length` bytes, before it is read. Other makers'
/// archives may end inside their last sector.
void CheckData(const std::string& archive, std::int64_t number, std::int64_t offset,
               std::int64_t size, std::int64_t length) {
  if (offset < 0 || size < 0 || offset + size > WholeSectors(length)) {
    FailOnRecord(archive, number,
                 Concat("has ", size, " bytes at ", offset, ", which don't lie in the file's ",
                        length, " bytes"));
  }
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
    Fail("archive \"", archive.Path(), "\": a directory of ", count,
         " records doesn't lie in the file's ", archive.Size(), " bytes");
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

/// Fills an archive that ends inside a sector up to the sector's `end`.
void PadTo(File& archive, std::int64_t end) {
  if (archive.Size() != end) archive.SetSize(end);
}

/// The records that `Load` counts in the order in which they are the lowest: by offset, and of
/// several with one offset the last first.
std::vector<std::size_t> RecordsByOffset(std::string_view directory) {
  std::vector<std::size_t> order(directory.size() / kRecordSize);
  std::iota(order.rbegin(), order.rend(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
    return RecordAt(directory, left).offset < RecordAt(directory, right).offset;
  });
  return order;
}

/// Whether the name in a record equals `name` without regard to case. A name that fills its field
/// has no NUL and never does.
bool HasName(std::string_view record, std::string_view name) {
  constexpr std::size_t kNameOffset = 8;
  // Where the name would have to end tells most records apart.
  return name.size() < kNameSize && record[kNameOffset + name.size()] == '\0' &&
         Text::EqualsIgnoringCase(record.substr(kNameOffset, name.size()), name);
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

/// Writes the data of entries to a file one behind the other, a block at a time. The blocks end at
/// whole multiples of their size, where the system has the least to do for each; the entries
/// themselves begin and end anywhere.
class BlockWriter {
 public:
  BlockWriter(File& target, std::int64_t position) : target_(target), position_(position) {}

  void Append(const File& source, std::int64_t offset, std::int64_t length) {
    while (length > 0) {
      const std::int64_t end = position_ + static_cast<std::int64_t>(block_.size());
      const std::int64_t count = std::min(length, kBlock - end % kBlock);
      const std::size_t filled = block_.size();
      block_.resize(filled + static_cast<std::size_t>(count));
      // The file may end inside the entry's last sector, which is filled with NULs then.
      source.ReadSomeAt(offset, block_.data() + filled, static_cast<std::size_t>(count));
      offset += count;
      length -= count;
      if ((end + count) % kBlock == 0) Flush();
    }
  }
  void Flush() {
    target_.WriteAt(position_, block_);
    position_ += static_cast<std::int64_t>(block_.size());
    block_.clear();
    if (position_ - started_ >= kStart) StartWriting();
  }

 private:
  static constexpr std::int64_t kStart = 128 * kBlock;

  // The disk works while more is copied, so that the sync at the end has little left to wait for.
  void StartWriting() {
    target_.StartWriting(started_, position_ - started_);
    started_ = position_;
  }

  File& target_;
  std::int64_t position_;     // where the block goes
  std::int64_t started_ = 0;  // what stands ahead of it is on its way to the disk
  std::string block_;
};

}  // namespace

double clsIMGtool::BytesToNumber(std::string_view fourBytes) {
  return NumberAt(fourBytes, 0);
}

std::string clsIMGtool::NumberToBytes(double number) {
  const double rounded = std::nearbyint(number);  // ties to even
  if (!(rounded >= static_cast<double>(kSmallestPosition) &&
        rounded <= static_cast<double>(kLargestPosition))) {
    Fail("number ", number, " doesn't fit 32 bits");
  }
  const auto bits = static_cast<std::uint32_t>(static_cast<std::int32_t>(rounded));
  std::string bytes;
  for (unsigned int shift = 0; shift < 32; shift += 8) {
    bytes.push_back(static_cast<char>((bits >> shift) & 255U));
  }
  return bytes;
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
  for (std::size_t i = 0; i < directory.size() / kRecordSize; ++i) {
    const Record record = RecordAt(directory, i);
    for (const std::int64_t bytes : {record.offset, record.size}) {
      if (bytes > kLargestPosition || bytes < kSmallestPosition) {
        FailOnRecord(imgFile_, static_cast<std::int64_t>(entries_.size()) + 1,
                     Concat("has ", record.size, " bytes at ", record.offset,
                            ", which is out of 32-bit range"));
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
    Fail("archive \"", imgFile_, "\": ", entries_.size(), " records are more than the ",
         kLongestSearch, " that can be searched");
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
  std::string data;
  {
    const File archive = files_.OpenForReading(imgFile_);
    CheckData(imgFile_, entry - entries_.data() + 1, entry->Offset, entry->Size, archive.Size());
    data = ReadSectors(archive, entry->Offset, entry->Size);
  }
  File destination = files_.OpenForOutput(strDestination);
  destination.WriteAt(0, data);
  destination.Close();
  return true;
}

void clsIMGtool::FindLowestRecord(std::string_view directory, std::int64_t fileLength) {
  lowestOffset_ = static_cast<double>(fileLength);
  nextEntryPos_ = kHeaderSize + 1;
  for (std::size_t i = 0; i < directory.size() / kRecordSize; ++i) {
    NoteRecord(RecordAt(directory, i).offset);
  }
}

clsIMGtool::Payload clsIMGtool::ReadPayload(const std::string& path) const {
  std::string name = BareName(files_, path);
  if (name.size() >= kNameSize) {
    Fail("archive \"", imgFile_, "\": the name \"", name, "\" has ", name.size(),
         " bytes, a record takes ", kNameSize - 1);
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
                  NumberToBytes(static_cast<double>(end) / kSector) +
                      NumberToBytes(static_cast<double>(payload.Size()) / kSector) + payload.name +
                      '\0');
  archive.WriteAt(kCountOffset, NumberToBytes(entryCount_ + 1));
  archive.WriteAt(end, payload.data);
}

void clsIMGtool::CheckEnd(std::int64_t end) const {
  if (end > kLargestPosition) {
    Fail("archive \"", imgFile_, "\": it would grow to ", end, " bytes, more than 2 GiB");
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
    CheckData(imgFile_, static_cast<std::int64_t>(index) + 1, record.offset, record.size,
              archive.Size());
    const std::string data = ReadSectors(archive, record.offset, record.size);
    const std::int64_t end = ReserveEnd(archive, record.size);
    PadTo(archive, end);
    archive.WriteAt(kHeaderSize + static_cast<std::int64_t>(index) * kRecordSize,
                    NumberToBytes(static_cast<double>(end) / kSector));
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
    Fail("archive \"", imgFile_, "\": the data of an entry at ", regionEnd,
         " begins inside the directory of ", directorySize, " bytes");
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
  {
    const File source = files_.OpenBinary(path);
    if (!HasMagic(source)) {
      imgFile_ = path;
      return false;
    }
    const std::int64_t count = ReadCount(source, 0);
    File target = files_.OpenBinary(temporary);
    CopyEntries(source, target, count);
    // The sync of the one file would have the disk take note of others, whose data isn't there yet.
    files_.SyncChanges();
    target.Sync();
    target.Close();
  }
  files_.PutInPlace(temporary, path);
  return Load(path);
}

void clsIMGtool::CopyEntries(const File& source, File& target, std::int64_t count) const {
  std::int64_t position = WholeSectors(kHeaderSize + 1 + count * kRecordSize);
  std::string head = source.ReadAt(0, kHeaderSize);
  const std::string directory = source.ReadAt(kHeaderSize, count * kRecordSize);
  const std::int64_t length = source.Size();
  BlockWriter writer(target, position);
  for (std::int64_t i = 0; i < count; ++i) {
    const Record record = RecordAt(directory, static_cast<std::size_t>(i));
    CheckData(source.Path(), i + 1, record.offset, record.size, length);
    writer.Append(source, record.offset, record.size);
    head += NumberToBytes(static_cast<double>(position) / kSector);
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
