#include "platform/DosPath.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "platform/Text.h"

namespace {

constexpr std::string_view kDotsAndBlanks = ". ";

bool IsDeviceName(std::string_view name) {
  constexpr std::array<std::string_view, 7> kDevices = {"con",    "prn",     "aux",   "nul",
                                                        "conin$", "conout$", "clock$"};
  // An extension, and blanks in front of it, don't make a device an ordinary name.
  const std::string_view written = Text::Trim(name.substr(0, name.find('.')));
  const std::string base = Text::LowerCase(written);
  if (std::find(kDevices.begin(), kDevices.end(), base) != kDevices.end()) return true;
  if (base.size() != 4 || !(base.starts_with("com") || base.starts_with("lpt"))) return false;
  // The superscript digits count as digits here.
  constexpr std::string_view kPorts = "123456789\xB9\xB2\xB3";
  return kPorts.find(base[3]) != std::string_view::npos;
}

// One step of a pattern. The rules are those by which Windows turns the wildcards of DOS into
// its own:
//   kAnyText   a `*`: any bytes
//   kAnyBase   a `*` in front of a dot, or of a dot that ended the pattern: any bytes but the
//              name's last dot
//   kAnyLetter a `?`: a byte other than a dot, or nothing in front of a dot or at the end
//   kDot       a dot in front of a wildcard: a dot, or nothing at the end
//   kLetter    the byte itself, without regard to case
enum class StepKind { kLetter, kAnyText, kAnyBase, kAnyLetter, kDot };

struct PatternStep {
  StepKind kind;
  char letter = 0;
};

std::vector<PatternStep> ParsePattern(std::string_view pattern) {
  const std::size_t last = pattern.find_last_not_of(kDotsAndBlanks);
  const std::size_t end = last == std::string_view::npos ? 0 : last + 1;
  const bool endsInDot = pattern.substr(end).find('.') != std::string_view::npos;
  std::vector<PatternStep> steps;
  for (std::size_t i = 0; i < end; ++i) {
    const bool isLast = i + 1 == end;
    const char next = isLast ? (endsInDot ? '.' : '\0') : pattern[i + 1];
    if (pattern[i] == '*')
      steps.push_back({next == '.' ? StepKind::kAnyBase : StepKind::kAnyText});
    else if (pattern[i] == '?')
      steps.push_back({StepKind::kAnyLetter});
    else if (pattern[i] == '.' && (next == '*' || next == '?'))
      steps.push_back({StepKind::kDot});
    else
      steps.push_back({StepKind::kLetter, Text::LowerCase(pattern[i])});
  }
  return steps;
}

// Walks all ways through a pattern at once: `reached_[i]` tells whether steps before the i-th
// can have taken the bytes read so far. So the work is bounded by name length x pattern length.
class PatternWalk {
 public:
  explicit PatternWalk(const std::vector<PatternStep>& steps)
      : steps_(steps), reached_(1, 1), after_(steps.size() + 1) {
    reached_.resize(after_.size());
  }

  // Passes over the steps that may take nothing in front of `next` (0 at the end of the name).
  void SkipSteps(char next) {
    for (std::size_t i = 0; i < steps_.size(); ++i)
      if (reached_[i] != 0 && MayTakeNothing(steps_[i].kind, next)) reached_[i + 1] = 1;
  }

  // Takes one byte; false if no way is left.
  bool Take(char letter, bool isLastDot) {
    std::fill(after_.begin(), after_.end(), '\0');
    bool any = false;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      if (reached_[i] == 0 || !Takes(steps_[i], letter, isLastDot)) continue;
      const bool stays =
          steps_[i].kind == StepKind::kAnyText || steps_[i].kind == StepKind::kAnyBase;
      after_[stays ? i : i + 1] = 1;
      any = true;
    }
    reached_.swap(after_);
    return any;
  }

  [[nodiscard]] bool AtEnd() const { return reached_.back() != 0; }

 private:
  static bool MayTakeNothing(StepKind kind, char next) {
    switch (kind) {
      case StepKind::kAnyText:
      case StepKind::kAnyBase:
        return true;
      case StepKind::kAnyLetter:
        return next == '.' || next == '\0';
      case StepKind::kDot:
        return next == '\0';
      case StepKind::kLetter:
        break;
    }
    return false;
  }

  static bool Takes(const PatternStep& step, char letter, bool isLastDot) {
    switch (step.kind) {
      case StepKind::kAnyText:
        return true;
      case StepKind::kAnyBase:
        return !isLastDot;
      case StepKind::kAnyLetter:
        return letter != '.';
      case StepKind::kDot:
        return letter == '.';
      case StepKind::kLetter:
        break;
    }
    return Text::LowerCase(letter) == step.letter;
  }

  const std::vector<PatternStep>& steps_;
  std::vector<char> reached_;
  std::vector<char> after_;
};

}  // namespace

namespace DosPath {

std::string Collapse(std::string_view path) {
  return Text::Replace(path, "\\\\", "\\");
}

std::string Join(std::string_view folder, std::string_view name) {
  std::string joined(folder);
  joined.append("\\").append(name);
  return Collapse(joined);
}

bool IsAbsolute(std::string_view path) {
  return Join(path, "").find(":\\") != std::string::npos;
}

bool IsFullPath(std::string_view path) {
  return path.size() >= 3 && path.substr(1, 2) == ":\\";
}

bool IsNetworkPath(std::string_view path) {
  constexpr std::string_view kSeparators = "\\/";
  return path.size() > 1 && path.find_first_not_of(kSeparators) != 0 &&
         path.find_first_not_of(kSeparators) != 1;
}

std::string_view FolderPart(std::string_view path) {
  // Without a backslash, npos + 1 is 0.
  return path.substr(0, path.rfind('\\') + 1);
}

bool IsPlainFileName(std::string_view name) {
  constexpr std::string_view kRefused = "\\/:*?\"<>|";
  const bool refused = std::any_of(name.begin(), name.end(), [&](char letter) {
    return static_cast<unsigned char>(letter) < 0x20 ||
           kRefused.find(letter) != std::string_view::npos;
  });
  const bool says = name.find_first_not_of(kDotsAndBlanks) != std::string_view::npos;
  return says && !refused && !IsDeviceName(name);
}

bool HasWildcards(std::string_view text) {
  return text.find_first_of("*?") != std::string_view::npos;
}

bool MatchesWildcards(std::string_view name, std::string_view pattern) {
  // No system has longer names, and a script's pattern may have thousands of wildcards.
  constexpr std::size_t kLongestPattern = 255;
  if (pattern.size() > kLongestPattern) return false;
  const std::vector<PatternStep> steps = ParsePattern(pattern);
  const std::size_t lastDot = name.rfind('.');
  PatternWalk walk(steps);
  for (std::size_t i = 0; i < name.size(); ++i) {
    walk.SkipSteps(name[i]);
    if (!walk.Take(name[i], i == lastDot)) return false;
  }
  walk.SkipSteps('\0');
  return walk.AtEnd();
}

}  // namespace DosPath
