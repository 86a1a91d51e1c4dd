#include "pack/ArchiveWriter.h"

#include <cstdint>
#include <utility>

#include "pack/ArchiveFormat.h"
#include "pack/ZlibStream.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

using namespace ArchiveFormat;

void ArchiveWriter::Add(std::string name, std::string data) {
  AddLater(std::move(name), [data = std::move(data)] { return data; });
}

void ArchiveWriter::AddCompressed(std::string name, std::string_view data) {
  Add(std::move(name), Compressed(data));
}

void ArchiveWriter::AddLater(std::string name, std::function<std::string()> produce) {
  if (name.size() > kNameSize) {
    Fail("the name \"", name, "\" has ", name.size(), " bytes, an archive takes ", kNameSize);
  }
  entries_.push_back({std::move(name), std::move(produce)});
}

void ArchiveWriter::Write(const FileSystem& files, const std::string& path) const {
  std::string head(kMagic);
  head += NumberField(static_cast<double>(entries_.size()));
  std::int64_t position =
      WholeSectors(kHeaderSize + static_cast<std::int64_t>(entries_.size()) * kRecordSize);
  const std::int64_t headSize = position;
  File archive = files.Create(path);
  for (const Entry& entry : entries_) {
    const std::string data = entry.produce();
    const std::int64_t size = WholeSectors(static_cast<std::int64_t>(data.size()));
    if (position + size > kLargestPosition) {
      FailOn(path, "it would grow beyond 2 GiB at the entry \"", entry.name, "\"");
    }
    archive.WriteAt(position, data);
    head += SectorField(position) + SectorField(size) + entry.name;
    head.append(kNameSize - entry.name.size(), '\0');
    position += size;
  }
  archive.SetSize(position);
  head.resize(static_cast<std::size_t>(headSize));
  archive.WriteAt(0, head);
  archive.Close();
}
