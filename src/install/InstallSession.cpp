#include "install/InstallSession.h"

#include <utility>

#include "core/basDebugLog.h"
#include "install/basTextEdit.h"
#include "platform/Text.h"

InstallSession::InstallSession(const FileSystem& files, InstallHost& host, ShellOpener& shell,
                               std::string tempDir)
    : Files(files),
      Host(host),
      Shell(shell),
      TempDir(std::move(tempDir)),
      ModPackIMG(files),
      IMG(files),
      zLib(files) {
  IMG.RebuildProgress = [this](double position, double count) {
    IMG_RebuildProgress(position, count);
  };
  IMG.DoEvents = [this] { Host.DoEvents(); };
  zLib.Progress = [this](int percent) { zLib_Progress(percent); };
  zLib.DoEvents = [this] { Host.DoEvents(); };
}

void InstallSession::SetStatus(const std::string& text) {
  status_ = text;
  Host.SetStatus(status_);
}

std::string InstallSession::ResolvePath(std::string_view path) const {
  return basTextEdit::ResolvePath(path, SAInstallDir);
}

std::string InstallSession::TempPath(std::string_view name) const {
  return TempDir + "\\" + std::string(name);
}

void InstallSession::IMG_RebuildProgress(double position, double count) {
  Trapped("frmMain.IMG_RebuildProgress", [&] {
    const std::string text = "Baue Archiv neu auf..." + StatusPrefix;
    // A rebuild right behind one of the same name keeps the bar's first range, so its bar may
    // stand still or fall short. Kept as it is: a pack's author sees his bars as he knows them.
    if (status_ != text) {
      SetStatus(text);
      BeginModProgress(Text::CheckedInt16(count, "the number of entries"));
    }
    SetModProgress(Text::CheckedInt16(position, "the number of an entry"));
  });
}

void InstallSession::zLib_Progress(int percent) {
  Trapped("frmMain.zLib_Progress", [&] {
    status_ = StatusPrefix + std::to_string(percent) + "%";
    Host.SetPercentStatus(StatusPrefix, percent);
  });
}

void InstallSession::BeginModProgress(std::int32_t max) {
  modBar_.SetMax(max);
  Host.SetModProgressMax(max);
}

/// A position above the top, as after a rebuild that kept the bar's range, doesn't move the bar.
void InstallSession::SetModProgress(std::int32_t value) {
  if (value > modBar_.Max()) return;
  modBar_.SetValue(value);
  Host.SetModProgress(value);
}
