// RebuildIMG, AddIMG and ReplaceIMG on a game archive of 1 GiB.

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Engine.h"
#include "PlainFile.h"
#include "Row.h"
#include "TestBytes.h"
#include "pack/ArchiveWriter.h"
#include "platform/Failure.h"

namespace {

constexpr std::size_t kSector = 2048;
constexpr std::size_t kEntries = 16000;
constexpr std::size_t kLargestEntry = 48 * kSector;
constexpr std::size_t kPayloads = 1000;
constexpr std::size_t kPayloadSize = 65536;

std::string EntryName(std::size_t index) {
  return "entry" + std::to_string(index) + ".dff";
}

void AppendNumber(std::string& bytes, std::size_t number) {
  for (unsigned int shift = 0; shift < 32; shift += 8) {
    bytes.push_back(static_cast<char>((number >> shift) & 255U));
  }
}

void AppendRecord(std::string& directory, std::size_t position, std::size_t size,
                  const std::string& name) {
  AppendNumber(directory, position / kSector);
  AppendNumber(directory, size / kSector);
  directory += name;
  directory.append(24 - name.size(), '\0');
}

/// Writes an archive as use leaves it: of about 21,300 pieces of 2 to 96 KiB in the order of their
/// records, every fourth, here and there, has lost its record. The directory is full but for what
/// is left of its last sector. Beside it, if `live` isn't empty, goes the data of its entries
/// alone.
void WriteGameArchive(const std::filesystem::path& path, const std::filesystem::path& live) {
  SeededNumbers numbers(1);
  PlainFile archive(path, PlainFile::Mode::kCreate);
  std::optional<PlainFile> liveData;
  if (!live.empty()) liveData.emplace(live, PlainFile::Mode::kCreate);
  std::string head = "VER2";
  AppendNumber(head, kEntries);
  std::size_t position = (head.size() + kEntries * 32 + kSector - 1) / kSector * kSector;
  archive.Seek(static_cast<std::int64_t>(position));
  for (std::size_t entries = 0; entries < kEntries;) {
    const std::size_t size = (1 + numbers.Below(kLargestEntry / kSector)) * kSector;
    const bool isLive = numbers.Below(4) != 0;
    const std::string bytes = NoiseBytes(numbers, size);
    archive.Write(bytes);
    if (isLive && liveData) liveData->Write(bytes);
    if (isLive) AppendRecord(head, position, size, EntryName(entries++));
    position += size;
  }
  archive.Seek(0);
  archive.Write(head);
  archive.Sync();
}

std::string ArchiveScript(const std::string& command, const std::vector<std::string>& names) {
  std::string script = command + " {\r\ngta3.img\r\n";
  for (const std::string& name : names) script += name + "\r\n";
  return script + "}\r\n";
}

/// The number of records that an archive's header gives.
std::size_t RecordCount(const std::filesystem::path& archive) {
  unsigned char head[8] = {};
  PlainFile(archive, PlainFile::Mode::kRead).Read(reinterpret_cast<char*>(head), sizeof head);
  return head[4] + head[5] * 256U + head[6] * 65536U + head[7] * 16777216U;
}

/// The engine's rebuild, which ends with the new archive synced and in the old one's place,
/// against `cp` and a sync of a file that holds just the bytes that stay. Both read from the page
/// cache: what is compared is how the bytes get from file to file, and to disk.
class RebuildRow : public Row {
 public:
  explicit RebuildRow(const std::filesystem::path& folder)
      : Row({"rebuild", "RebuildIMG, 1 GiB, 16,000 entries, a quarter dead",
             "cp of the live bytes, both synced", 1.3}),
        engine_(folder),
        master_(folder / "master.img"),
        archive_(folder / "gta3.img"),
        live_(folder / "live.bin"),
        copy_(folder / "copy.bin") {
    WriteGameArchive(master_, live_);
  }

  [[nodiscard]] std::int64_t MemoryLimit() const override {
    return 64 * kMiB + static_cast<std::int64_t>(kLargestEntry);
  }
  void BeforeYardstick() override {
    std::filesystem::remove(archive_);
    std::filesystem::remove(copy_);
  }
  void RunYardstick() override {
    CopyByCommand(live_, copy_);
    SyncPlain(copy_);
  }
  void BeforeWork() override {
    std::filesystem::remove(copy_);
    std::filesystem::remove(archive_);
    CopyByCommand(master_, archive_);
  }
  void RunWork() override { engine_.RunScript(ArchiveScript("RebuildIMG", {})); }
  void CheckWork() override {
    const std::size_t head = (8 + kEntries * 32 + kSector) / kSector * kSector;
    if (std::filesystem::file_size(archive_) != std::filesystem::file_size(live_) + head) {
      Fail("the archive wasn't rebuilt");
    }
  }

 private:
  Engine engine_;
  std::filesystem::path master_;
  std::filesystem::path archive_;
  std::filesystem::path live_;
  std::filesystem::path copy_;
};

/// A block of 1,000 payloads as a script runs it, unpacking out of the pack included, and a sync
/// of the archive at its end; against one program that has the unpacked bytes in memory already,
/// appends them to the same archive in one go, and syncs it.
class PayloadRow : public Row {
 public:
  PayloadRow(Title title, const std::filesystem::path& folder, const std::string& command,
             const std::vector<std::string>& names, std::size_t recordsAfter)
      : Row(std::move(title)),
        engine_(folder),
        archive_(folder / "gta3.img"),
        script_(ArchiveScript(command, names)),
        recordsAfter_(recordsAfter) {
    WriteGameArchive(archive_, {});
    length_ = static_cast<std::int64_t>(std::filesystem::file_size(archive_));
    head_.resize(2 * kMiB);
    PlainFile(archive_, PlainFile::Mode::kRead).Read(head_.data(), head_.size());
    MakePack(engine_.DosText(folder / "pack.kvpk"), names);
  }

  [[nodiscard]] std::int64_t MemoryLimit() const override {
    return 64 * kMiB + static_cast<std::int64_t>(kLargestEntry);
  }
  void BeforeYardstick() override {
    RestoreArchive();
    SeededNumbers numbers(2);
    payloads_.clear();
    for (std::size_t i = 0; i < kPayloads; ++i) payloads_ += PayloadBytes(numbers, kPayloadSize);
  }
  void RunYardstick() override {
    PlainFile archive(archive_, PlainFile::Mode::kReadWrite);
    archive.Seek(length_);
    for (std::size_t i = 0; i < kPayloads; ++i) {
      archive.Write(std::string_view(payloads_).substr(i * kPayloadSize, kPayloadSize));
    }
    archive.Sync();
  }
  void BeforeWork() override {
    RestoreArchive();
    std::string().swap(payloads_);
  }
  void RunWork() override {
    engine_.RunScript(script_);
    SyncPlain(archive_);
  }
  void CheckWork() override {
    constexpr std::size_t kAdded = kPayloads * kPayloadSize;
    if (RecordCount(archive_) != recordsAfter_ ||
        std::filesystem::file_size(archive_) < static_cast<std::size_t>(length_) + kAdded) {
      Fail("the archive didn't get its entries");
    }
  }

 private:
  void MakePack(const std::string& path, const std::vector<std::string>& names) {
    SeededNumbers numbers(2);
    ArchiveWriter pack;
    for (const std::string& name : names) {
      pack.AddCompressed(name, PayloadBytes(numbers, kPayloadSize));
    }
    pack.Write(engine_.Files(), path);
    engine_.Session().ModPackIMG.Load(path);
  }
  /// All that a block changes is the directory, the data right behind it and the end.
  void RestoreArchive() {
    PlainFile archive(archive_, PlainFile::Mode::kReadWrite);
    archive.Write(head_);
    archive.SetSize(length_);
  }

  Engine engine_;
  std::filesystem::path archive_;
  std::string script_;
  std::size_t recordsAfter_;
  std::int64_t length_;
  std::string head_;
  std::string payloads_;
};

}  // namespace

std::unique_ptr<Row> MakeRebuildRow(const std::filesystem::path& folder) {
  return std::make_unique<RebuildRow>(folder);
}

std::unique_ptr<Row> MakeAddRow(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < kPayloads; ++i) names.push_back("added" + std::to_string(i) + ".dff");
  return std::make_unique<PayloadRow>(
      Row::Title{"add", "AddIMG of 1,000 entries of 64 KiB in one block to such an archive",
                 "appending the same bytes by one plain writer, both synced", 2},
      folder, "AddIMG", names, kEntries + kPayloads);
}

std::unique_ptr<Row> MakeReplaceRow(const std::filesystem::path& folder) {
  // Spread over the directory, and not in its order.
  std::vector<std::string> names;
  for (std::size_t i = 0; i < kPayloads; ++i) names.push_back(EntryName(i * 7919 % kEntries));
  return std::make_unique<PayloadRow>(
      Row::Title{"replace", "ReplaceIMG of 1,000 entries of 64 KiB in it", "the same", 8}, folder,
      "ReplaceIMG", names, kEntries);
}
