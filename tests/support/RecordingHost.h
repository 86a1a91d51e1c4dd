#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/ProgressRange.h"
#include "install/InstallHost.h"
#include "platform/Shell.h"

/// A host that keeps what it is told, with bars that follow the rules of the real ones.
class RecordingHost : public InstallHost {
 public:
  std::vector<std::string> Statuses;
  /// What concerns the run over all mods, status texts included, in order.
  std::vector<std::string> Calls;
  std::vector<std::int32_t> ModMaxima;
  ProgressRange ModBar;
  ProgressRange TotalBar;
  int DoEventsCount = 0;
  std::function<void()> OnDoEvents;
  std::function<void()> OnFinalMessage;

  void SetStatus(const std::string& text) override {
    Statuses.push_back(text);
    Calls.push_back("status " + text);
  }
  void SetModProgressMax(std::int32_t max) override {
    ModMaxima.push_back(max);
    ModBar.SetMax(max);
  }
  void SetModProgress(std::int32_t value) override { ModBar.SetValue(value); }
  void SetTotalProgressMax(std::int32_t max) override {
    TotalBar.SetMin(0);
    TotalBar.SetMax(max);
    Calls.push_back("total max " + std::to_string(max));
  }
  void SetTotalProgress(std::int32_t value) override {
    TotalBar.SetValue(value);
    Calls.push_back("total " + std::to_string(value));
  }
  void DoEvents() override {
    ++DoEventsCount;
    if (OnDoEvents) OnDoEvents();
  }
  void ShowProgressPage() override { Calls.emplace_back("show page"); }
  void ShowFinalMessage(const std::string& text) override {
    Calls.push_back("message " + text);
    if (OnFinalMessage) OnFinalMessage();
  }
  void HideProgressPage() override { Calls.emplace_back("hide page"); }
};

/// An opener that opens nothing and keeps what it was asked to: file and working directory.
class RecordingOpener : public ShellOpener {
 public:
  std::vector<std::pair<std::string, std::string>> Opened;

  void Open(const std::string& file, const std::string& folder) override {
    Opened.emplace_back(file, folder);
  }
};
