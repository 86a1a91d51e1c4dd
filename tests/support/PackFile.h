#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pack/ArchiveWriter.h"
#include "pack/Catalogue.h"
#include "pack/clsEncryption.h"
#include "pack/clsIMGtool.h"
#include "support/TempFolder.h"

/// An entry of an archive as it lies there: name and data, filled to whole sectors.
using StoredEntry = std::pair<std::string, std::string>;

/// Writes an archive with exactly these entries.
inline void WriteArchive(const TempFolder& folder, std::string_view file,
                         const std::vector<StoredEntry>& entries) {
  ArchiveWriter writer;
  for (const auto& [name, data] : entries) writer.Add(name, data);
  writer.Write(FileSystem(), folder.Dos(file));
}

/// Writes a pack: `index` (the plain text of its index) enciphered, then the entries.
inline void WritePack(const TempFolder& folder, std::string_view file, const std::string& index,
                      const std::vector<StoredEntry>& entries = {}) {
  const TempFolder own;
  const FileSystem files;
  own.Write("plain", index);
  clsEncryption cipher(files);
  cipher.InputFileName = own.Dos("plain");
  cipher.OutputFileName = own.Dos("ciphered");
  cipher.Password = clsEncryption::IndexPassword();
  cipher.EncryptFile();
  std::vector<StoredEntry> all{{std::string(kIndexEntry), own.Read("ciphered")}};
  all.insert(all.end(), entries.begin(), entries.end());
  WriteArchive(folder, file, all);
}

/// The entries of an archive, as a fresh object finds them and the file has their data.
inline std::vector<StoredEntry> EntriesOf(const TempFolder& folder, std::string_view file) {
  const FileSystem files;
  clsIMGtool archive(files);
  EXPECT_TRUE(archive.Load(folder.Dos(file)));
  const std::string bytes = folder.Read(file);
  std::vector<StoredEntry> entries;
  for (const udtIMGEntry& entry : archive.Entries()) {
    const auto offset = static_cast<std::size_t>(entry.Offset);
    const auto size = static_cast<std::size_t>(entry.Size);
    const bool inFile = offset + size <= bytes.size();
    entries.emplace_back(entry.Name, inFile ? bytes.substr(offset, size) : "(beyond the file)");
  }
  return entries;
}
