#pragma once

#include <string>
#include <utility>
#include <vector>

#include "pack/ArchiveWriter.h"
#include "pack/Catalogue.h"
#include "pack/clsEncryption.h"
#include "support/TempFolder.h"

/// Writes a pack `below` a folder, with `index` (the plain text of its index) and payload, which
/// is compressed.
inline void WritePack(const TempFolder& folder, const std::string& below, const std::string& index,
                      const std::vector<std::pair<std::string, std::string>>& payload = {}) {
  const FileSystem files;
  folder.Write("pack-index.plain", index);
  clsEncryption cipher(files);
  cipher.InputFileName = folder.Dos("pack-index.plain");
  cipher.OutputFileName = folder.Dos("pack-index.ciphered");
  cipher.Password = clsEncryption::IndexPassword();
  cipher.EncryptFile();

  ArchiveWriter writer;
  for (const auto& [name, data] : payload) writer.AddCompressed(name, data);
  writer.Add(std::string(kIndexEntry), folder.Read("pack-index.ciphered"));
  writer.Write(files, folder.Dos(below));
  std::filesystem::remove(folder.At("pack-index.plain"));
  std::filesystem::remove(folder.At("pack-index.ciphered"));
}
