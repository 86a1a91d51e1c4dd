#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/TempFolder.h"

/// What a run of the program left behind.
struct KvpkRun {
  int exitStatus = -1;
  std::string output;
  std::string errors;
};

/// Runs the real program with `folder` as its current directory, and with its own place for
/// temporary files, which it must leave empty.
KvpkRun Kvpk(const TempFolder& folder, const std::vector<std::string>& arguments);

/// An entry of an archive as it lies there: name and data, filled to whole sectors.
struct StoredEntry {
  std::string name;
  std::string data;
};
/// Writes an archive with exactly these entries.
void WriteArchive(const TempFolder& folder, std::string_view file,
                  const std::vector<StoredEntry>& entries);
/// Writes a pack: an enciphered index, then the entries.
void WritePack(const TempFolder& folder, std::string_view file, const std::string& index,
               const std::vector<StoredEntry>& entries);
/// The first entry of each name in an archive.
std::map<std::string, std::string> EntriesOf(const TempFolder& folder, std::string_view file);
