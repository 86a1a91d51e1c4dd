#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// What the opening of a pack needs of a window. Whoever has none takes the defaults.
class PackOpeningView {
 public:
  virtual ~PackOpeningView() = default;
  virtual void ShowLoading() {}
  virtual void UnloadLoading() {}
  virtual void DoEvents() {}
  virtual void MessageBox(const std::string& /*text*/, const std::string& /*title*/) {}
  virtual void SetTitle(const std::string& /*title*/) {}
  /// A click on the first row of the type list: selects the first type, draws both lists.
  virtual void ClickFirstType() {}
  virtual void DrawTypeList() {}
  virtual void SetHtmlVisible(bool /*visible*/) {}
  virtual void SetHtmlHeight(int /*pixels*/) {}
  /// Shows the page that lies in the file `path` (DOS path text).
  virtual void ShowHtmlPage(const std::string& /*path*/) {}
  /// Smallest size of the window in pixels from now on.
  virtual void SetMinimumSize(int /*width*/, int /*height*/) {}
};

/// What became of an opening, for developers; the program itself never looks at it.
struct PackOpening {
  bool isArchive = true;               // false: the file isn't an archive, the catalogue stayed
  bool hasIndex = true;                // false: the pack has no readable `modpack.ini`
  std::optional<std::string> failure;  // the cause that ended the opening where it stood
};

/// Opens the pack `path` (DOS path text): loads it into `ModPackIMG`, deciphers its index in
/// `TempDir`, reads the index into `catalogue`, and leaves the pack's page in `TempDir` +
/// "\html.htm" if it has one. A failure ends it where it stands, without a message.
///
/// The index is an INI text with the sections `Info`, `Mod1`, `Mod2`, ... and `Typ1`, `Typ2`,
/// ...; in it "<nl>" stands for a line break. Behind it lies up to a sector of junk, which is
/// what the cipher makes of the entry's fill.
PackOpening OpenKELVOFile(const FileSystem& files, clsIMGtool& ModPackIMG,
                          const std::string& TempDir, Catalogue& catalogue, PackOpeningView& view,
                          const std::string& path);

/// Name of the index's entry in every pack.
inline constexpr std::string_view kIndexEntry = "modpack.ini";
/// How a line break (CR LF) is written in the index.
inline constexpr std::string_view kLineBreakMark = "<nl>";
