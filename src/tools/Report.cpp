#include "tools/Report.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "pack/Catalogue.h"
#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

bool IsControl(char letter) {
  const auto byte = static_cast<unsigned char>(letter);
  // The bytes that Windows-1252 leaves undefined stand for C1 control characters.
  constexpr std::array<unsigned char, 6> kOthers{0x7F, 0x81, 0x8D, 0x8F, 0x90, 0x9D};
  return byte < 0x20 || std::find(kOthers.begin(), kOthers.end(), byte) != kOthers.end();
}

}  // namespace

std::string Printable(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string safe;
  for (const char letter : text) {
    if (IsControl(letter) && letter != '\t') {
      const auto byte = static_cast<unsigned char>(letter);
      safe += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 15U]};
    } else {
      safe += letter;
    }
  }
  return Text::ToUtf8(safe);
}

std::string ScriptName(const Catalogue& catalogue, std::size_t mod) {
  if (mod == 0) return "the end script";
  return Concat("mod ", mod, ", \"", catalogue.Mods.at(mod).Name, "\"");
}

void PrintError(std::string_view text) {
  std::cout.flush();
  std::cerr << "kvpk: " + Printable(text) + "\n";
}

basDebugLog::Recorder LogRecorder() {
  return [](const basDebugLog::TrappedFailure& failure) {
    if (!failure.callerTells) PrintError(Concat(failure.source, ": ", failure.cause));
  };
}
