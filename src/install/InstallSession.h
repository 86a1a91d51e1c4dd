#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/ProgressRange.h"
#include "install/InstallHost.h"
#include "pack/Catalogue.h"
#include "pack/clsIMGtool.h"
#include "pack/zlibIF.h"

class FileSystem;
class ShellOpener;

/// All that the install engine works on: the open pack, the game archive that a script has in
/// hand, the places, and the way to the host. One for the program's life; two of them don't know
/// of each other.
class InstallSession {
 public:
  /// `tempDir`: DOS path text of an existing folder, without a trailing backslash.
  InstallSession(const FileSystem& files, InstallHost& host, ShellOpener& shell,
                 std::string tempDir);
  InstallSession(InstallSession&&) = delete;
  InstallSession(const InstallSession&) = delete;
  InstallSession& operator=(InstallSession&&) = delete;
  InstallSession& operator=(const InstallSession&) = delete;
  ~InstallSession() = default;

  const FileSystem& Files;
  InstallHost& Host;
  ShellOpener& Shell;

  std::string TempDir;
  std::string SAInstallDir;  // the game directory, DOS path text
  clsIMGtool ModPackIMG;     // the open pack
  clsIMGtool IMG;            // the game archive that a script works on
  zlibIF zLib;
  Catalogue Pack;
  std::string StatusPrefix;  // what the progress events put in front of or behind their own text
  bool InstallRunning = false;
  std::size_t ModNumber = 0;   // of the mod in hand, 1-based; 0 for the end script
  std::size_t LineNumber = 0;  // of the script line in hand, 1-based

  /// Sets the status line and has it repainted.
  void SetStatus(const std::string& text);

  /// `ResolvePath` against this session's game directory.
  [[nodiscard]] std::string ResolvePath(std::string_view path) const;
  /// `TempDir` + backslash + `name`.
  [[nodiscard]] std::string TempPath(std::string_view name) const;

  /// Handler of `IMG`'s `RebuildProgress`: position and number of the entry just written.
  void IMG_RebuildProgress(double position, double count);
  /// Handler of `zLib`'s `Progress`, in percent.
  void zLib_Progress(int percent);

  /// The bar over the current script: a new top, which puts the position to 0.
  void BeginModProgress(std::int32_t max);
  void StepModProgress() { SetModProgress(modBar_.Value() + 1); }

 private:
  void SetModProgress(std::int32_t value);

  std::string status_;
  ProgressRange modBar_;
};
