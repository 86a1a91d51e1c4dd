#include "tools/PackSource.h"

#include <algorithm>
#include <array>

#include "install/basScript.h"
#include "platform/DosPath.h"
#include "platform/Text.h"

namespace PackSource {
namespace {

enum class BlockKind { kNone, kOther, kIntoArchive, kIntoFolder };

struct BlockHead {
  std::string_view text;
  BlockKind kind;
};

/// The blocks whose arguments name payload.
constexpr std::array<BlockHead, 4> kPayloadHeads{{
    {"AddIMG {", BlockKind::kIntoArchive},
    {"ReplaceIMG {", BlockKind::kIntoArchive},
    {"Copy {", BlockKind::kIntoFolder},
    {"Move {", BlockKind::kIntoFolder},
}};

/// The block that a line opens if it is a head.
std::optional<BlockKind> OpenedBy(std::string_view line) {
  if (!basScript::IsHead(line)) return std::nullopt;
  const auto* const head = std::find_if(
      kPayloadHeads.begin(), kPayloadHeads.end(),
      [&](const BlockHead& candidate) { return Text::EqualsIgnoringCase(candidate.text, line); });
  return head == kPayloadHeads.end() ? BlockKind::kOther : head->kind;
}

/// One argument of a script, with where it stands.
struct Argument {
  std::string_view text;
  std::size_t line;   // 1-based
  BlockKind block;    // of the block that is open
  std::size_t index;  // 0-based among the block's arguments
};

/// Walks a script's lines as a run without jumps would.
std::vector<Argument> WalkArguments(std::string_view script) {
  std::vector<Argument> arguments;
  BlockKind block = BlockKind::kNone;
  std::size_t index = 0;
  std::size_t number = 1;
  for (std::size_t begin = 0; begin <= script.size(); ++number) {
    const std::size_t end = std::min(script.find("\r\n", begin), script.size());
    const std::string_view line = script.substr(begin, end - begin);
    begin = end + 2;
    const std::optional<BlockKind> opened = line == "}" ? BlockKind::kNone : OpenedBy(line);
    if (opened) {
      block = *opened;
      index = 0;
    } else if (const auto argument = basScript::ArgumentOf(line)) {
      arguments.push_back({*argument, number, block, index++});
    }
  }
  return arguments;
}

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
  for (const Argument& argument : WalkArguments(script)) {
    const bool intoArchive = argument.block == BlockKind::kIntoArchive;
    const bool plainSource =
        argument.block == BlockKind::kIntoFolder && DosPath::IsPlainFileName(argument.text);
    // The first argument is the archive or the target folder.
    if (argument.index == 0 || !(intoArchive || plainSource)) continue;
    uses.push_back({argument.text, argument.line, intoArchive});
  }
  return uses;
}

std::vector<std::string_view> Arguments(std::string_view script) {
  std::vector<std::string_view> texts;
  for (const Argument& argument : WalkArguments(script)) texts.push_back(argument.text);
  return texts;
}

}  // namespace PackSource
