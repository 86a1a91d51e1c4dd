#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/basIni.h"
#include "pack/dclUDTs.h"

class FileSystem;
class clsIMGtool;

/// What a pack offers, in memory. Lives from one successful opening of a pack to the next.
struct Catalogue {
  std::string Title;
  std::string EndScript;  // lines separated by CR LF
  std::string HTML;       // lines separated by CR LF
  std::int16_t HTMLHeight = 0;
  /// Index 0 is an empty placeholder in both; the entries are 1 to the upper bound.
  std::vector<udtMod> Mods{1};
  std::vector<udtModType> ModTypes{1};
};

/// Name of the index's entry in every pack.
inline constexpr std::string_view kIndexEntry = "modpack.ini";
/// How a line break (CR LF) is written in the index.
inline constexpr std::string_view kLineBreakMark = "<nl>";

/// The index of a pack, deciphered: an INI text with the sections `Info`, `Mod1`, `Mod2`, ... and
/// `Typ1`, `Typ2`, ...; in it "<nl>" stands for a line break. Behind it lies up to a sector of
/// junk, which is what the cipher makes of the entry's fill.
class PackIndex {
 public:
  using MessageBox = std::function<void(const std::string& text, const std::string& title)>;

  /// Deciphers the index of the pack that `ModPackIMG` has loaded, by way of two files in `TempDir`
  /// (DOS path text). An index that can't be read is shown through `messageBox`, and is empty.
  PackIndex(const FileSystem& files, const clsIMGtool& ModPackIMG, const std::string& TempDir,
            const MessageBox& messageBox);

  [[nodiscard]] std::string Title() const;
  /// Replaces the content of `catalogue` by what the index says, in the order of the index's
  /// description, and deletes the two files at the end. `doEvents` is called between mods and
  /// types, while the catalogue is incomplete. A failure leaves it as far as it has come; what it
  /// hasn't come to stays.
  void ReadInto(Catalogue& catalogue, const std::function<void()>& doEvents) const;

 private:
  const FileSystem& files_;
  std::string cipheredFile_;
  std::string plainFile_;
  basIni::IniFile index_;
};

/// What came of opening a pack.
struct PackOpening {
  Catalogue catalogue;                      // as far as it could be read
  bool isArchive = true;                    // false: the file is none, and nothing was read
  std::optional<std::string> indexMessage;  // of the cipher; set if there is no readable index
  std::optional<std::string> failure;       // the cause that ended the opening where it stood
};

/// Opens the pack `path` (DOS path text) without showing anything: loads it into `ModPackIMG`, and
/// reads its index by way of `TempDir`.
PackOpening OpenKELVOFile(const FileSystem& files, clsIMGtool& ModPackIMG,
                          const std::string& TempDir, const std::string& path);
