#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "install/InstallHost.h"
#include "install/InstallSession.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"

/// A host that drops everything: what is measured is the engine, with the texts that it makes.
class SilentHost : public InstallHost {
 public:
  void SetStatus(const std::string& /*text*/) override {}
  void SetModProgressMax(std::int32_t /*max*/) override {}
  void SetModProgress(std::int32_t /*value*/) override {}
  void SetTotalProgressMax(std::int32_t /*max*/) override {}
  void SetTotalProgress(std::int32_t /*value*/) override {}
  void DoEvents() override {}
  void ShowFinalMessage(const std::string& /*text*/) override {}
};

class SilentShell : public ShellOpener {
 public:
  void Open(const std::string& /*file*/, const std::string& /*folder*/) override {}
};

/// The engine as a program holds it, with `folder` as the game directory and a temp directory in
/// it.
class Engine {
 public:
  explicit Engine(const std::filesystem::path& folder);

  /// Runs a script and fails if it stopped early.
  void RunScript(const std::string& script);
  [[nodiscard]] std::string DosText(const std::filesystem::path& path) const {
    return files_.ToDosText(path);
  }
  [[nodiscard]] const FileSystem& Files() const { return files_; }
  InstallSession& Session() { return session_; }

 private:
  FileSystem files_;
  SilentHost host_;
  SilentShell shell_;
  InstallSession session_;
};
