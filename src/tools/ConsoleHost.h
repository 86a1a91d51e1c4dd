#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "core/ProgressRange.h"
#include "install/InstallHost.h"

/// The terminal as the engine's host: keeps the two progress bars, and tells failures of the
/// cipher on stderr.
class ConsoleHost : public InstallHost {
 public:
  void SetModProgressMax(std::int32_t max) override { mod_.SetMax(max); }
  void SetModProgress(std::int32_t value) override { mod_.SetValue(value); }
  [[nodiscard]] std::int32_t ModProgress() const override { return mod_.Value(); }
  void SetTotalProgressMax(std::int32_t max) override;
  void SetTotalProgress(std::int32_t value) override { total_.SetValue(value); }
  /// Fails if the user wants the run to stop.
  void DoEvents() override;
  void ShowFinalMessage(const std::string& /*text*/) override {}

  [[nodiscard]] const ProgressRange& ModRange() const { return mod_; }
  [[nodiscard]] const ProgressRange& TotalRange() const { return total_; }

 private:
  ProgressRange mod_;
  ProgressRange total_;
};

/// The host of a single script: a line "status: TEXT" on stdout for each status text, as it is.
class ScriptConsole : public ConsoleHost {
 public:
  void SetStatus(const std::string& text) override;
};

/// The host of an install run: each status text on a line, and below them, if stdout is a
/// terminal, a line that shows how far the run has come.
class InstallConsole : public ConsoleHost {
 public:
  explicit InstallConsole(bool showProgress) : showProgress_(showProgress) {}
  InstallConsole(const InstallConsole&) = delete;
  InstallConsole& operator=(const InstallConsole&) = delete;
  InstallConsole(InstallConsole&&) = delete;
  InstallConsole& operator=(InstallConsole&&) = delete;
  ~InstallConsole() override { ClearProgress(); }

  void SetStatus(const std::string& text) override;
  void DoEvents() override;
  void ShowFinalMessage(const std::string& text) override;

 private:
  void PrintLine(const std::string& text);
  void DrawProgress();
  void ClearProgress();

  bool showProgress_;
  bool progressShown_ = false;
  std::chrono::steady_clock::time_point nextDrawing_;
};
