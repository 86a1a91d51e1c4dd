#include "tools/JsonOutput.h"

#include <cstdint>

#include "pack/Catalogue.h"
#include "pack/clsIMGtool.h"
#include "platform/Text.h"

using nlohmann::ordered_json;

ordered_json DirectoryJson(const clsIMGtool& archive) {
  ordered_json entries = ordered_json::array();
  for (const udtIMGEntry& entry : archive.Entries()) {
    entries.push_back(
        {{"name", Text::ToUtf8(entry.Name)}, {"offset", entry.Offset}, {"size", entry.Size}});
  }
  return {{"entryCount", static_cast<std::int64_t>(archive.EntryCount())},
          {"nextEntryPos", static_cast<std::int64_t>(archive.NextEntryPos())},
          {"lowestOffset", static_cast<std::int64_t>(archive.LowestOffset())},
          {"lowestEntryPos", static_cast<std::int64_t>(archive.LowestEntryPos())},
          {"entries", std::move(entries)}};
}

ordered_json CatalogueJson(const Catalogue& catalogue) {
  ordered_json mods = ordered_json::array();
  for (std::size_t i = 1; i < catalogue.Mods.size(); ++i) {
    const udtMod& mod = catalogue.Mods[i];
    mods.push_back({{"typeId", mod.TypeID},
                    {"name", Text::ToUtf8(mod.Name)},
                    {"description", Text::ToUtf8(mod.Description)},
                    {"picture", Text::ToUtf8(mod.Picture)},
                    {"installScript", Text::ToUtf8(mod.InstallScript)},
                    {"readme", Text::ToUtf8(mod.Readme)},
                    {"files", Text::ToUtf8(mod.Files)},
                    {"selected", mod.Selected}});
  }
  ordered_json types = ordered_json::array();
  for (std::size_t i = 1; i < catalogue.ModTypes.size(); ++i) {
    const udtModType& type = catalogue.ModTypes[i];
    types.push_back({{"typeId", type.TypeID},
                     {"name", Text::ToUtf8(type.Name)},
                     {"picture", Text::ToUtf8(type.Picture)},
                     {"description", Text::ToUtf8(type.Description)},
                     {"modCount", type.ModCount},
                     {"checkState", type.CheckState}});
  }
  return {{"title", Text::ToUtf8(catalogue.Title)},
          {"endScript", Text::ToUtf8(catalogue.EndScript)},
          {"html", Text::ToUtf8(catalogue.HTML)},
          {"htmlHeight", catalogue.HTMLHeight},
          {"mods", std::move(mods)},
          {"modTypes", std::move(types)}};
}
