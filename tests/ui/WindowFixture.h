#pragma once

#include <QApplication>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/FileSystem.h"
#include "sound/Sound.h"
#include "support/PackFile.h"
#include "support/RecordingHost.h"
#include "support/TempFolder.h"
#include "ui/OptionsPage.h"
#include "ui/SkinInputs.h"
#include "ui/SlidingPanel.h"
#include "ui/frmMain.h"

/// Keeps what it is asked to play.
class RecordingSounds : public SoundLibrary {
 public:
  std::vector<std::string> Calls;

  void Init(int /*mixRate*/, int /*channels*/) override {}
  Song LoadSong(std::string_view /*path*/) override { return 1; }
  void PlaySong(Song /*song*/) override { Calls.emplace_back("tune"); }
  void StopSong(Song /*song*/) override { Calls.emplace_back("stop"); }
  void Close() override {}
  void PlayWave(std::string_view /*wave*/) override { Calls.emplace_back("click"); }
};

/// The main window on a private folder: `program/` with the program's own files and `game/`, a
/// game directory. Message boxes are answered by the test.
class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    Folder.MakeFolder("program");
    Folder.Write("game/gta_sa.exe", "");
    Folder.Write("game/data/a.txt", "eins\r\n");
  }

  /// The setting that names the game directory, and others.
  void WriteIniWithGame(const std::string& others = "") {
    WriteIni("SA_InstallDir=" + Folder.Dos("game") + "\r\n" + others);
  }
  void WriteIni(const std::string& settings) {
    Folder.Write("program/kelvo.ini", "[Settings]\r\n" + settings);
  }

  /// Two types, two mods of the first and one of the second; each mod adds its line.
  static std::string Index(const std::string& info = "Title=Probe\r\n") {
    return "[Info]\r\n" + info +
           "[Mod1]\r\nTypeID=1\r\nName=A\r\nDescription=a\r\nReadme=Lies A\r\n"
           "InstallScript=AddLine {<nl>data\\a.txt<nl>eins<nl>von A<nl>}\r\n"
           "[Mod2]\r\nTypeID=2\r\nName=B\r\n"
           "InstallScript=AddLine {<nl>data\\a.txt<nl>eins<nl>von B<nl>}\r\n"
           "[Mod3]\r\nTypeID=1\r\nName=C\r\nInstallScript=Unsinn {<nl>\r\n"
           "[Typ1]\r\nTypeID=1\r\nName=Erste\r\nDescription=Typ eins\r\n"
           "[Typ2]\r\nTypeID=2\r\nName=Zweite\r\nDescription=Typ zwei\r\n";
  }

  /// Loads and shows the window as the program does.
  frmMain& Start(const std::string& commandLine = "") {
    Window = std::make_unique<frmMain>(Surroundings{
        .files = Files,
        .shell = Shell,
        .sound = Player,
        .messages = {.Information = Teller("information"),
                     .Stop = Teller("stop"),
                     .Plain = Teller("plain"),
                     .Confirm =
                         [this](QWidget*, const QString& text, const QString& title) {
                           Note("confirm", text, title);
                           return Answer;
                         },
                     .Consent =
                         [this](QWidget*, const QStringList& deeds, const QString& title) {
                           Note("consent", deeds.join('|'), title);
                           return Answer;
                         }},
        .registry = Registry,
        .programFolder = Folder.Dos("program"),
        .commandLine = commandLine,
        .TempDir = Folder.Dos("program") + "\\inst_temp"});
    Window->Form_Load();
    Window->show();
    QApplication::processEvents();
    return *Window;
  }

  frmMain& StartWithPack(const std::string& info = "Title=Probe\r\n") {
    WritePack(Folder, "program/p.kvpk", Index(info));
    return Start();
  }

  MessageBoxes::Tell Teller(const char* kind) {
    return [this, kind](QWidget*, const QString& text, const QString& title) {
      Note(kind, text, title);
      if (OnMessage) OnMessage();
    };
  }
  void Note(const char* kind, const QString& text, const QString& title) {
    Messages.push_back(std::string(kind) + ": " + title.toStdString() + ": " + text.toStdString());
  }
  [[nodiscard]] std::string Ini() const { return Folder.Read("program/kelvo.ini"); }

  TempFolder Folder;
  FileSystem Files;
  RecordingOpener Shell;
  RecordingSounds Library;
  Sound Player{Library,
               Folder.Dos("program"),
               {.musikTicked = [this] { return Window != nullptr && Window->IsMusicTicked(); },
                .windowShown = [this] { return Window != nullptr && Window->isVisible(); }}};
  Registry::Source Registry;
  std::vector<std::string> Messages;
  bool Answer = false;
  std::function<void()> OnMessage;
  std::unique_ptr<frmMain> Window;
};
