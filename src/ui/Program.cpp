#include "ui/Program.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>

#include "core/basDebugLog.h"
#include "core/basRegistry.h"
#include "platform/DosPath.h"
#include "ui/EngineText.h"
#include "ui/NativePath.h"
#include "ui/frmLoading.h"
#include "ui/frmMain.h"

Program::Program(const FileSystem& files, Start start)
    : files_(files),
      start_(std::move(start)),
      programFolder_(basMain::FolderOf(start_.programPath)),
      shell_(files),
      sound_(start_.soundLibrary, programFolder_,
             {.musikTicked = [this] { return main_ != nullptr && main_->IsMusicTicked(); },
              .windowShown = [this] { return main_ != nullptr && main_->isVisible(); }}) {}

Program::~Program() = default;

void Program::Main() {
  Trapped("basMain.Main", [&] {
    LoadSplash();
    QCoreApplication::processEvents();
    CreateMainWindow();
    ExportComponents();
    InstallKVPKExtension();
    LoadMainWindow();
    main_->show();
  });
}

void Program::LoadSplash() {
  splash_ = std::make_unique<frmLoading>();
  splash_->show();
}

void Program::CreateMainWindow() {
  // With it come the archive object of the open pack and the place of the temp directory.
  main_ = std::make_unique<frmMain>(Surroundings{.files = files_,
                                                 .shell = shell_,
                                                 .sound = sound_,
                                                 .messages = start_.messages,
                                                 .registry = start_.registry,
                                                 .programFolder = programFolder_,
                                                 .commandLine = start_.commandLine,
                                                 .TempDir = basMain::TempDirOf(programFolder_)},
                                    std::move(splash_));
}

void Program::ExportComponents() {
  basMain::ExportComponents(files_, programFolder_, start_.resources);
}

void Program::InstallKVPKExtension() {
  QFile icon(":/skin/kelvo_128.png");
  const QByteArray bytes = icon.open(QIODevice::ReadOnly) ? icon.readAll() : QByteArray();
  basRegistry::InstallKVPKExtension(files_, start_.programPath, bytes.toStdString());
}

void Program::LoadMainWindow() {
  main_->Form_Load();
}

std::string Program::CommandLine(const FileSystem& files, const QStringList& arguments) {
  const QString line = arguments.mid(1).join(' ');
  const QUrl url(line);
  const QString path = url.isLocalFile() ? url.toLocalFile() : line;
  std::string text = FromQString(path);
  if (arguments.size() == 2 && QFileInfo::exists(path)) {
    Trapped("basMain.CommandLine", [&] { text = NativePath::ToDosText(files, path); });
  }
  return text;
}
