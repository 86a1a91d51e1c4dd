#pragma once

#include <QStringList>
#include <memory>
#include <string>
#include <vector>

#include "core/basMain.h"
#include "platform/FileSystem.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "sound/Sound.h"
#include "ui/MessageBoxes.h"

class frmLoading;
class frmMain;

/// The windowed program. `Main` brings up the main window; from then on the program lives on
/// events until that window, and a chat window if one is open, are closed.
class Program {
 public:
  /// What the program finds where it is started.
  struct Start {
    std::string programPath;  // of the running program file, DOS path text
    std::string commandLine;  // engine text, see `CommandLine`
    Registry::Source registry = Registry::Source::FromEnvironment();
    SoundLibrary& soundLibrary;
    std::vector<basMain::ResFile> resources;
    MessageBoxes messages = MessageBoxes::Native();
  };

  Program(const FileSystem& files, Start start);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  Program(Program&&) = delete;
  Program& operator=(Program&&) = delete;

  /// The entry procedure. Has a trap.
  void Main();

  /// The main window; null until `Main` has come to it.
  [[nodiscard]] frmMain* Window() { return main_.get(); }

  /// The command line as one text, as the program takes it: the arguments without the program's
  /// own, joined by blanks. A desktop may hand over the pack as a `file:` address, which becomes
  /// a path here; one argument that names a file becomes that file's DOS path text.
  static std::string CommandLine(const FileSystem& files, const QStringList& arguments);

 private:
  void LoadSplash();
  void CreateMainWindow();
  void ExportComponents();
  void InstallKVPKExtension();
  void LoadMainWindow();

  const FileSystem& files_;
  Start start_;
  std::string programFolder_;
  DesktopOpener shell_;
  Sound sound_;
  std::unique_ptr<frmLoading> splash_;
  std::unique_ptr<frmMain> main_;
};
