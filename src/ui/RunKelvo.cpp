#include "ui/RunKelvo.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QTranslator>
#include <filesystem>
#include <iostream>

#include "controls/Fonts.h"
#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/Process.h"
#include "sound/SoundLibrary.h"
#include "tune/Tune.h"
#include "ui/EngineText.h"
#include "ui/MessageBoxes.h"
#include "ui/NativePath.h"
#include "ui/Program.h"

namespace {

/// The toolkit's own texts, such as those of message boxes, in the system's language.
void InstallTranslator(QTranslator& translator) {
  if (translator.load(QLocale(), "qtbase", "_",
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&translator);
  }
}

}  // namespace

int RunKelvo(int argc, char** argv) {
  Process::PrepareStreams();
  // Ahead of the toolkit, which needs a display.
  const std::vector<std::string> words = Process::Arguments(argc, argv);
  if (words.size() == 2 && words[1] == "--version") {
    std::cout << "kelvo " KELVO_VERSION "\n";
    return 0;
  }
  basDebugLog::SetRecorder(basDebugLog::RecorderFromEnvironment());
  QApplication application(argc, argv);
  QApplication::setApplicationName("KELVO");
  QGuiApplication::setDesktopFileName("kelvo");
  QTranslator translator;
  InstallTranslator(translator);
  Fonts::Load();

  const FileSystem files(FileSystemOptions::FromEnvironment());
  std::string programPath;
  try {
    programPath = NativePath::ToDosText(files, QCoreApplication::applicationFilePath());
  } catch (const Failure& failure) {
    // The program's own folder has a name that the game's world can't say.
    basDebugLog::LogError("RunKelvo", failure.what());
    QMessageBox::critical(
        nullptr, MessageBoxes::DefaultTitle(),
        "KELVO kann aus diesem Ordner nicht starten, weil ein Name in seinem Pfad "
        "ein Zeichen enthält, das in Pfaden des Spiels nicht stehen kann: " +
            QCoreApplication::applicationDirPath());
    return 1;
  }
  const std::unique_ptr<SoundLibrary> soundLibrary = MakeSoundLibrary(files);

  // Until the main window is there the splash is the only one, and its end not the program's.
  QGuiApplication::setQuitOnLastWindowClosed(false);
  Program program(files, {.programPath = programPath,
                          .commandLine = Program::CommandLine(files, QCoreApplication::arguments()),
                          .soundLibrary = *soundLibrary,
                          .resources = {{"music.mod", Tune::Module()}}});
  program.Main();
  QGuiApplication::setQuitOnLastWindowClosed(true);
  return QApplication::exec();
}
