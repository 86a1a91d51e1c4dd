#include "tools/ConsoleHost.h"

#include <algorithm>
#include <iostream>

#include "platform/Process.h"
#include "platform/Text.h"
#include "platform/WantedStop.h"
#include "tools/Report.h"

namespace {

constexpr std::string_view kEraseLine = "\r\x1B[K";
constexpr auto kBetweenDrawings = std::chrono::milliseconds(50);

/// "[####......]", `width` characters between the brackets.
std::string Drawn(const ConsoleHost::Bar& bar, int width) {
  const int length = bar.max > 0 ? bar.max : 1;
  const auto done =
      static_cast<std::size_t>(std::int64_t{width} * std::clamp(bar.value, 0, length) / length);
  return "[" + std::string(done, '#') + std::string(static_cast<std::size_t>(width) - done, '.') +
         "]";
}

}  // namespace

void ConsoleHost::DoEvents() {
  if (const int signal = Process::StopRequested()) throw WantedStop{signal};
}

void ScriptConsole::SetStatus(const std::string& text) {
  std::cout << "status: " + Printable(text) + "\n";
}

void InstallConsole::SetStatus(const std::string& text) {
  percentText_.clear();
  PrintLine(text);
}

void InstallConsole::SetPercentStatus(const std::string& text, int percent) {
  if (text != percentText_) PrintLine(text);
  percentText_ = text;
  percent_ = percent;
}

void InstallConsole::DoEvents() {
  ConsoleHost::DoEvents();
  const auto now = std::chrono::steady_clock::now();
  if (!showProgress_ || now < nextDrawing_) return;
  nextDrawing_ = now + kBetweenDrawings;
  DrawProgress();
}

void InstallConsole::ShowFinalMessage(const std::string& text) {
  PrintLine(text);
}

void InstallConsole::PrintLine(const std::string& text) {
  ClearProgress();
  std::cout << Printable(text) + "\n";
}

void InstallConsole::DrawProgress() {
  constexpr int kTotalWidth = 30;
  constexpr int kModWidth = 20;
  std::cout << kEraseLine << Drawn(TotalBar(), kTotalWidth) << ' ' << TotalBar().value << '/'
            << TotalBar().max << "  " << Drawn(ModBar(), kModWidth);
  if (!percentText_.empty()) std::cout << ' ' << percent_ << '%';
  std::cout << std::flush;
  progressShown_ = true;
}

void InstallConsole::ClearProgress() {
  if (!progressShown_) return;
  std::cout << kEraseLine << std::flush;
  progressShown_ = false;
}
