// make_game FOLDER: makes a small game directory to try a pack on. It has the shape of a real one
// (program file, text files, archives), and each call makes the same bytes.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "game_texts.h"
#include "pack/ArchiveWriter.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kMaxSectors = 20;

// The folders that the files need, parents first.
constexpr auto kFolders = std::to_array<std::string_view>(
    {"audio", R"(audio\CONFIG)", "data", R"(data\maps)", "models", R"(models\coll)", "text"});

constexpr auto kVehicles = std::to_array<std::string_view>(
    {"karat",  "kombi",    "stern",  "droschke", "lieferan", "laster",   "kipper",
     "linie9", "muellmax", "loesch", "rettung",  "streife",  "pritsche", "strandy",
     "oldie",  "flitzer",  "cabrio", "roller",   "chopper",  "enduro"});
constexpr auto kPeople = std::to_array<std::string_view>(
    {"hafenarb", "fischfrau", "schraub1", "schraub2", "pendler", "kioskfrau", "kurier", "nachtwae",
     "taxler", "studi", "rentner", "surfer"});
constexpr auto kDistricts = std::to_array<std::string_view>(
    {"hafen", "altstadt", "industrie", "vorstadt", "bahn", "ring", "strand", "berg"});
constexpr auto kBuildings = std::to_array<std::string_view>(
    {"halle", "haus", "block", "mauer", "zaun", "bruecke", "strasse", "platz"});
constexpr auto kProps = std::to_array<std::string_view>(
    {"laterne01", "laterne02", "laterne03", "laterne_dbl", "ampel01", "muelltonne", "hydrant",
     "parkbank", "reklame_a", "reklame_b", "reklame_c", "zeitungsbox", "bauzaun"});
constexpr auto kRooms = std::to_array<std::string_view>(
    {"tanke", "kiosk", "garage", "imbiss", "wache", "club", "lager", "wohnung"});

void AddPairs(std::vector<std::string>& names, std::span<const std::string_view> models) {
  for (const std::string_view model : models) {
    names.push_back(std::string(model) + ".dff");
    names.push_back(std::string(model) + ".txd");
  }
}

void AddDistrict(std::vector<std::string>& names, const std::string& district) {
  for (const std::string_view building : kBuildings) {
    for (const char* number : {"01", "02"}) {
      names.push_back(Concat(district, "_", building, number, ".dff"));
    }
  }
  for (int number = 1; number <= 3; ++number) {
    names.push_back(Concat("lod_", district, number, ".dff"));
    names.push_back(Concat(district, number, ".txd"));
  }
  names.push_back(district + "_lod.txd");
  names.push_back(district + ".col");
  names.push_back(district + "_stream0.ipl");
}

std::vector<std::string> OutdoorNames() {
  std::vector<std::string> names;
  AddPairs(names, kVehicles);
  AddPairs(names, kPeople);
  for (const std::string_view district : kDistricts) AddDistrict(names, std::string(district));
  for (const std::string_view prop : kProps) names.push_back(std::string(prop) + ".dff");
  for (const char* textures : {"laternen", "reklame", "strassenkram", "vegetation"}) {
    names.push_back(std::string(textures) + ".txd");
  }
  return names;
}

std::vector<std::string> IndoorNames() {
  std::vector<std::string> names;
  for (const std::string_view room : kRooms) {
    names.push_back(Concat("innen_", room, ".dff"));
    names.push_back(Concat("innen_", room, ".txd"));
    names.push_back(Concat("innen_", room, ".col"));
    names.push_back(Concat(room, "_moebel.txd"));
  }
  return names;
}

/// A sequence of numbers that a text determines.
class NumberSequence {
 public:
  explicit NumberSequence(std::string_view seed) {
    for (const char letter : seed) {
      state_ = (state_ ^ static_cast<unsigned char>(letter)) * 16777619U;
    }
  }

  std::uint32_t Next() {
    state_ ^= state_ << 13U;
    state_ ^= state_ >> 17U;
    state_ ^= state_ << 5U;
    return state_;
  }

 private:
  std::uint32_t state_ = 2166136261U;
};

/// What an entry holds: its name, then bytes that don't compress, 1 to `kMaxSectors` sectors of
/// 2,048 bytes with the small ones more frequent.
std::string EntryData(const std::string& name) {
  NumberSequence numbers(name);
  const std::uint32_t sectors =
      1 + std::min(numbers.Next() % kMaxSectors, numbers.Next() % kMaxSectors);
  std::string data = name + "\r\n";
  const std::size_t size = std::size_t{sectors} * 2048 - numbers.Next() % 2000;
  data.reserve(size);
  while (data.size() < size) data.push_back(static_cast<char>(numbers.Next() >> 24U));
  return data;
}

class GameMaker {
 public:
  explicit GameMaker(const fs::path& folder) : root_(files_.ToDosText(folder)) {}

  void Make() const {
    for (const std::string_view folder : kFolders) files_.CreateFolder(Below(folder));
    for (const GameText& file : kGameTexts) WriteText(file);
    files_.WriteWhole(Below("gta_sa.exe"), "MZ Attrappe von GTA San Andreas, kein Programm.\r\n");
    WriteArchive(R"(models\gta3.img)", OutdoorNames());
    WriteArchive(R"(models\gta_int.img)", IndoorNames());
    for (const char* collisions : {R"(models\coll\fahrzeuge.col)", R"(models\coll\personen.col)"}) {
      files_.WriteWhole(Below(collisions), EntryData(collisions));
    }
  }

 private:
  [[nodiscard]] std::string Below(std::string_view path) const {
    return DosPath::Join(root_, path);
  }

  void WriteText(const GameText& file) const {
    const auto text = Text::FromUtf8(file.text);
    if (!text) Fail(file.path, ": the text can't be said in Windows-1252");
    files_.WriteWhole(Below(file.path), Text::Replace(*text, "\n", "\r\n"));
  }

  void WriteArchive(std::string_view path, const std::vector<std::string>& names) const {
    ArchiveWriter archive;
    for (const std::string& name : names) archive.Add(name, EntryData(name));
    archive.Write(files_, Below(path));
    std::cout << Text::ToUtf8(path) << ": " << names.size() << " entries\n";
  }

  FileSystem files_;
  std::string root_;
};

/// Makes the folder with the parents it lacks. One that is there must be empty: a real game, or
/// anything else of the user's, is never written to.
void MakeEmptyFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::exists(folder, error)) {
    if (!fs::is_directory(folder, error)) Fail("not a folder");
    if (!fs::is_empty(folder, error) || error) Fail("the folder exists and isn't empty");
    return;
  }
  if (folder.has_parent_path() && !fs::exists(folder.parent_path(), error)) {
    MakeEmptyFolder(folder.parent_path());
  }
  const FileSystem files;
  files.CreateFolder(files.ToDosText(folder));
}

}  // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() != 2) {
    std::cerr << "usage: make_game FOLDER\n";
    return 2;
  }
  try {
    // The last component of "folder/" is empty: its folder is meant.
    fs::path folder = fs::absolute(arguments[1]).lexically_normal();
    if (!folder.has_filename()) folder = folder.parent_path();
    MakeEmptyFolder(folder);
    GameMaker(folder).Make();
  } catch (const std::exception& failure) {
    std::cerr << "make_game: " << arguments[1] << ": " << Text::ToUtf8(failure.what()) << '\n';
    return 1;
  }
  return 0;
}
