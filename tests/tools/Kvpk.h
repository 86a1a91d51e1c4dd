#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/PackFile.h"
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

/// The first entry of each name in an archive.
inline std::map<std::string, std::string> EntriesByName(const TempFolder& folder,
                                                        std::string_view file) {
  const std::vector<StoredEntry> entries = EntriesOf(folder, file);
  return {entries.begin(), entries.end()};
}
