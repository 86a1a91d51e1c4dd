#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "WindowRows.h"
#include "install/InstallRun.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"
#include "platform/Text.h"
#include "sound/Sound.h"
#include "sound/SoundLibrary.h"
#include "tools/ConsoleHost.h"
#include "ui/OptionsPage.h"
#include "ui/SkinInputs.h"
#include "ui/frmMain.h"

namespace {

constexpr int kLines = 1000;

/// One block of `AddLine` with that many texts for a small file.
std::string Script() {
  std::string script = "AddLine {\r\ndata\\a.txt\r\nanker\r\n";
  for (int i = 0; i < kLines; ++i) script += "Zeile " + std::to_string(i) + "\r\n";
  return script + "}\r\n";
}

/// The console's host as `kvpk install` has it, with nobody reading.
class DroppedConsole : public ConsoleHost {
 public:
  void SetStatus(const std::string& text) override { sink_ << Text::ToUtf8(text) << '\n'; }

 private:
  std::ofstream sink_{"/dev/null"};
};

double Milliseconds(const QElapsedTimer& clock) {
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

}  // namespace

WindowResult MeasureScript(int rounds) {
  const QTemporaryDir folder;
  const FileSystem files;
  const std::string root = files.ToDosText(folder.path().toStdString());
  for (const char* const name : {R"(\program)", R"(\game)", R"(\game\data)"}) {
    files.CreateFolder(root + name);
  }
  files.WriteWhole(root + R"(\program\kelvo.ini)", "[Settings]\r\nPlayMusic=0\r\n");
  DesktopOpener shell(files);
  const std::unique_ptr<SoundLibrary> library = MakeSoundLibrary(files);
  Sound sound(*library, root, {[] { return false; }, [] { return false; }});
  frmMain window({.files = files,
                  .shell = shell,
                  .sound = sound,
                  .messages = {.Information = [](auto...) {},
                               .Stop = [](auto...) {},
                               .Plain = [](auto...) {},
                               .Confirm = [](auto...) { return false; },
                               .Consent = [](auto...) { return false; }},
                  .registry = {},
                  .programFolder = root + "\\program",
                  .commandLine = "",
                  .TempDir = root + R"(\program\inst_temp)"});
  window.Form_Load();
  window.show();
  window.picSAInstallDir->txtSAInstallDir->setText(QString::fromStdString(root + "\\game"));
  const auto prepare = [&](InstallSession& session) {
    files.WriteWhole(root + R"(\game\data\a.txt)", "anker\r\n");
    session.Pack.Mods.resize(2);
    session.Pack.Mods[1].Selected = true;
    session.Pack.Mods[1].InstallScript = Script();
  };

  DroppedConsole host;
  InstallSession tool(files, host, shell, root + R"(\program\inst_temp)");
  tool.SAInstallDir = root + "\\game";
  std::vector<double> ratios;
  std::string detail;
  for (int round = 0; round <= rounds; ++round) {
    QElapsedTimer clock;
    prepare(tool);
    clock.start();
    RunInstall(tool);
    const double console = Milliseconds(clock);
    QApplication::processEvents();
    prepare(window.Session());
    clock.start();
    window.cmdInstall_Click();
    const double inWindow = Milliseconds(clock);
    detail = std::to_string(inWindow) + " / " + std::to_string(console) + " ms";
    if (round > 0) ratios.push_back(inWindow / console);
  }
  std::sort(ratios.begin(), ratios.end());
  return {"an install of 1,000 script lines", ratios[ratios.size() / 2], 1.3,
          "the same by the console, its output dropped: " + detail};
}
