#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "install/InstallHost.h"

/// The terminal as the engine's host: remembers what the two bars show.
class ConsoleHost : public InstallHost {
 public:
  struct Bar {
    std::int32_t max = 100;
    std::int32_t value = 0;
  };

  void SetModProgressMax(std::int32_t max) override { mod_ = {max}; }
  void SetModProgress(std::int32_t value) override { mod_.value = value; }
  void SetTotalProgressMax(std::int32_t max) override { total_ = {max}; }
  void SetTotalProgress(std::int32_t value) override { total_.value = value; }
  /// Throws `WantedStop` if the user wants the run to stop.
  void DoEvents() override;
  void ShowFinalMessage(const std::string& /*text*/) override {}
  /// Takes back what isn't a line of its own, so that another may be printed.
  virtual void ClearProgress() {}

  [[nodiscard]] const Bar& ModBar() const { return mod_; }
  [[nodiscard]] const Bar& TotalBar() const { return total_; }

 private:
  Bar mod_;
  Bar total_;
};

/// The host of a single script: a line "status: TEXT" on stdout for each status text.
class ScriptConsole : public ConsoleHost {
 public:
  void SetStatus(const std::string& text) override;
};

/// The host of an install run that says nothing.
class QuietConsole : public ConsoleHost {
 public:
  void SetStatus(const std::string& /*text*/) override {}
  void SetPercentStatus(const std::string& /*text*/, int /*percent*/) override {}
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
  ~InstallConsole() override { InstallConsole::ClearProgress(); }

  void SetStatus(const std::string& text) override;
  /// The text on a line, once; the percentage in the line below.
  void SetPercentStatus(const std::string& text, int percent) override;
  void DoEvents() override;
  void ShowFinalMessage(const std::string& text) override;
  void ClearProgress() override;

 private:
  void PrintLine(const std::string& text);
  void DrawProgress();

  bool showProgress_;
  std::string percentText_;  // of the work that tells how far it has come
  int percent_ = 0;
  bool progressShown_ = false;
  std::chrono::steady_clock::time_point nextDrawing_;
};
