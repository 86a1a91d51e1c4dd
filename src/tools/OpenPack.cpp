#include "tools/OpenPack.h"

#include <utility>

#include "pack/Catalogue.h"
#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "tools/Paths.h"
#include "tools/Report.h"

std::optional<std::string> OpenPack(const FileSystem& files, clsIMGtool& pack,
                                    const std::string& tempDir, Catalogue& catalogue,
                                    const std::string& utf8) {
  PackOpening opening = OpenKELVOFile(files, pack, tempDir, ExistingFile(files, utf8));
  const std::string name = "pack \"" + Text::FromUtf8Lossy(utf8) + "\": ";
  if (!opening.isArchive) Fail(name, "it isn't an IMG archive, which begins with \"VER2\"");
  catalogue = std::move(opening.catalogue);
  if (opening.failure) return name + "its opening ended early: " + *opening.failure;
  if (!opening.indexMessage) return std::nullopt;
  return name + "it has no readable index, the entry \"" + std::string(kIndexEntry) + "\" (" +
         *opening.indexMessage + ")";
}

void OpenWholePack(const FileSystem& files, clsIMGtool& pack, const std::string& tempDir,
                   Catalogue& catalogue, const std::string& utf8) {
  const std::optional<std::string> defect = OpenPack(files, pack, tempDir, catalogue, utf8);
  if (defect) Fail(*defect);
}
