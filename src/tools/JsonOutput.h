#pragma once

#include <nlohmann/json.hpp>

struct Catalogue;
class clsIMGtool;

/// An archive's directory, the keys in the order that the tool's users know.
nlohmann::ordered_json DirectoryJson(const clsIMGtool& archive);

/// A pack's catalogue. Line breaks inside the strings stay CR LF.
nlohmann::ordered_json CatalogueJson(const Catalogue& catalogue);
