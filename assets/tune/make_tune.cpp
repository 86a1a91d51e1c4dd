// make_tune SCORE OUTDIR: makes the program's sounds from their sources: music.mod from the score,
// click.wav, and Tune.cpp, which holds the bytes of both.
#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Click.h"
#include "Instruments.h"
#include "Module.h"
#include "Score.h"
#include "Song.h"

namespace {

/// The length that the module has to have; the crash cymbal takes what is left of it.
constexpr std::size_t kModuleSize = 79948;
constexpr std::size_t kShortestCrash = 4000;

std::string MakeModule(const std::string& scorePath) {
  std::ifstream score(scorePath);
  if (!score) throw std::runtime_error("can't read " + scorePath);
  std::vector<Instrument> instruments = MakeInstruments();
  std::size_t waves = 0;
  for (const Instrument& instrument : instruments) waves += instrument.wave.size();
  instruments.push_back(MakeCrash(kShortestCrash));
  Song song = ReadScore(score, std::move(instruments));

  const std::size_t taken = ModuleSizeWithoutWaves(song) + waves;
  if (taken + kShortestCrash > kModuleSize)
    throw std::runtime_error("patterns and instruments leave too little for the crash cymbal: " +
                             std::to_string(taken) + " of " + std::to_string(kModuleSize));
  song.instruments.back() = MakeCrash(kModuleSize - taken);
  return WriteModule(song);
}

void WriteFile(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("can't write " + path);
}

/// Source text of a function that returns `bytes`.
std::string FunctionOf(const std::string& name, std::string_view bytes) {
  std::string source =
      "std::string_view " + name + "() {\n  static const unsigned char bytes[] = {";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    source += (i % 24 == 0 ? "\n      " : "");
    source += std::to_string(static_cast<unsigned char>(bytes[i])) + ",";
  }
  return source + "};\n  return {reinterpret_cast<const char*>(bytes), sizeof bytes};\n}\n";
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv, argv + argc);
  if (arguments.size() != 3) {
    std::cerr << "usage: make_tune SCORE OUTDIR\n";
    return 2;
  }
  try {
    const std::string module = MakeModule(arguments[1]);
    const std::string click = MakeClick();
    WriteFile(arguments[2] + "/music.mod", module);
    WriteFile(arguments[2] + "/click.wav", click);
    WriteFile(arguments[2] + "/Tune.cpp",
              "#include \"tune/Tune.h\"\n\nnamespace Tune {\n\n" + FunctionOf("Module", module) +
                  "\n" + FunctionOf("Click", click) + "\n}  // namespace Tune\n");
  } catch (const std::exception& failure) {
    std::cerr << "make_tune: " << arguments[1] << ": " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
