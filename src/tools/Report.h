#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/basDebugLog.h"
#include "platform/WantedStop.h"

struct Catalogue;

/// What a run of the tool ends with.
namespace ExitStatus {
inline constexpr int kDone = 0;
inline constexpr int kUnusable = 1;  // the input can't be used
inline constexpr int kUsage = 2;     // wrong usage
inline constexpr int kFailed = 3;    // something in a script failed
/// As shells have it for a program that a signal has ended.
inline int OfStop(const WantedStop& stop) {
  return 128 + stop.signal;
}
}  // namespace ExitStatus

/// A subcommand with its arguments, ready to run; returns the exit status.
using Action = std::function<int()>;

/// Wrong usage that shows only when the arguments are looked at. Engine text.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Engine text for a person's eyes: UTF-8 in which control characters, which could end the line
/// or steer the terminal, are written as "\x1B".
std::string Printable(std::string_view text);

/// How messages name a script of a pack: `mod` is the catalogue number, 0 for the end script.
std::string ScriptName(const Catalogue& catalogue, std::size_t mod);
/// One line on stderr, behind what stdout has so far: "kvpk: " and `text` (engine text).
void PrintError(std::string_view text);

/// Takes the failures that the engine traps and goes on from to stderr. Those that the callers of
/// the trapped procedures tell are left out: the subcommands do it, with place and cause.
basDebugLog::Recorder LogRecorder();
