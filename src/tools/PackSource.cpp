#include "tools/PackSource.h"

#include "install/ScriptWalk.h"
#include "platform/DosPath.h"
#include "platform/Text.h"

namespace PackSource {
namespace {

using Content = ArgumentRole::Content;

std::optional<unsigned> HexDigit(char letter) {
  if (letter >= '0' && letter <= '9') return static_cast<unsigned>(letter - '0');
  const char lower = Text::LowerCase(letter);
  if (lower >= 'a' && lower <= 'f') return static_cast<unsigned>(lower - 'a') + 10;
  return std::nullopt;
}

}  // namespace

bool CanNameFile(std::string_view entryName) {
  constexpr std::string_view kDropped = ". ";  // what a file system with DOS names drops at the end
  return DosPath::IsPlainFileName(entryName) && !entryName.starts_with('.') &&
         kDropped.find(entryName.back()) == std::string_view::npos;
}

std::string EscapedName(std::string_view entryName) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char letter : entryName) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x20 || byte == 0x7F || letter == '%') {
      text += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    } else {
      text += letter;
    }
  }
  return text;
}

std::optional<std::string> UnescapedName(std::string_view text) {
  std::string name;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      name += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    const auto high = HexDigit(text[i + 1]);
    const auto low = HexDigit(text[i + 2]);
    if (!high || !low) return std::nullopt;
    name += static_cast<char>(*high << 4U | *low);
    i += 2;
  }
  return name;
}

std::vector<PayloadUse> PayloadUses(std::string_view script) {
  std::vector<PayloadUse> uses;
  ForEachArgument(script, [&](const ScriptStep& step, std::size_t line) {
    const bool intoArchive = step.role.content == Content::kPayload;
    const bool plainSource =
        step.role.content == Content::kSource && DosPath::IsPlainFileName(step.argument);
    if (intoArchive || plainSource) uses.push_back({step.argument, line, intoArchive});
  });
  return uses;
}

std::vector<std::string_view> Arguments(std::string_view script) {
  std::vector<std::string_view> texts;
  ForEachArgument(script, [&](const ScriptStep& step, std::size_t /*line*/) {
    texts.push_back(step.argument);
  });
  return texts;
}

}  // namespace PackSource
