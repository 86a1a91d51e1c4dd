#include "tools/ConsoleHost.h"

#include <algorithm>
#include <iostream>

#include "platform/Failure.h"
#include "platform/Process.h"
#include "platform/Text.h"
#include "tools/Report.h"

namespace {

constexpr std::string_view kEraseLine = "\r\x1B[K";
constexpr auto kBetweenDrawings = std::chrono::milliseconds(50);

/// "[####......]", `width` characters between the brackets.
std::string Bar(const ProgressRange& range, int width) {
  const int length = range.Max() > 0 ? range.Max() : 1;
  const auto done =
      static_cast<std::size_t>(std::int64_t{width} * std::clamp(range.Value(), 0, length) / length);
  return "[" + std::string(done, '#') + std::string(static_cast<std::size_t>(width) - done, '.') +
         "]";
}

}  // namespace

void ConsoleHost::SetTotalProgressMax(std::int32_t max) {
  total_.SetMin(0);
  total_.SetMax(max);
}

void ConsoleHost::DoEvents() {
  if (Process::StopRequested()) Fail("the user has stopped it");
}

void ScriptConsole::SetStatus(const std::string& text) {
  std::cout << "status: " + Text::ToUtf8(text) + "\n";
}

void InstallConsole::SetStatus(const std::string& text) {
  PrintLine(text);
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
  const ProgressRange& total = TotalRange();
  std::cout << kEraseLine << Bar(total, kTotalWidth) << ' ' << total.Value() << '/' << total.Max()
            << "  " << Bar(ModRange(), kModWidth) << std::flush;
  progressShown_ = true;
}

void InstallConsole::ClearProgress() {
  if (!progressShown_) return;
  std::cout << kEraseLine << std::flush;
  progressShown_ = false;
}
