// Load and unload of the main window, each in the order of its steps.

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <cstdlib>

#include "core/WindowPosition.h"
#include "core/basDebugLog.h"
#include "core/basIni.h"
#include "core/basMain.h"
#include "core/basRegistry.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/window/DelWindowCaption.h"
#include "platform/window/basMinMax.h"
#include "sound/Sound.h"
#include "ui/CatalogueLists.h"
#include "ui/DetailView.h"
#include "ui/OptionsPage.h"
#include "ui/ProgressPage.h"
#include "ui/SlidingPanel.h"
#include "ui/frmLoading.h"
#include "ui/frmMain.h"

namespace {

constexpr int kSmallestWidth = 400;
constexpr int kSmallestHeight = 250;

}  // namespace

void frmMain::Form_Load() {
  Trapped("frmMain.Form_Load", [&] {
    basMinMax::HookMinMax(this, kSmallestWidth, session_.Pack.HTMLHeight + kSmallestHeight);
    ShowLoading();
    QCoreApplication::processEvents();
    PlaceWindow();
    panel->Place(width(), height());
    Init();
  });
}

void frmMain::PlaceWindow() {
  const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
  const std::string centred =
      Concat((screen.width() - Layout::kDesignSize.width()) / 2, ',',
             (screen.height() - Layout::kDesignSize.height()) / 2, ',', Layout::kDesignSize.width(),
             ',', Layout::kDesignSize.height());
  const WindowPosition place = WindowPosition::Parse(
      basIni::INIRead(surroundings_.files, iniPath_, "Settings", "Position", centred));
  // A window larger than all screens together takes memory for pixels that nobody sees.
  const QSize desktop = QGuiApplication::primaryScreen()->virtualSize();
  setGeometry({{place.left, place.top}, QSize(place.width, place.height).boundedTo(desktop)});
}

void frmMain::Init() {
  Trapped("frmMain.Init", [&] {
    EmptyCatalogue();
    lists->PrepareEmptyPicture();
    CreateTempDir();
    OpenFirstPack();
    PrepareLook();
    lists->DrawTypeList();
    ReadSettings();
    FindGameDirectory();
    lists->RedrawLists(true);
  });
}

void frmMain::EmptyCatalogue() {
  session_.Pack.Mods.assign(1, {});
  session_.Pack.ModTypes.assign(1, {});
}

void frmMain::CreateTempDir() {
  tempDir_ = basMain::TakeTempDir(surroundings_.files, surroundings_.TempDir);
  session_.TempDir = tempDir_.path;
}

void frmMain::OpenFirstPack() {
  const std::string pack = basMain::FindPack(surroundings_.files, surroundings_.commandLine,
                                             surroundings_.programFolder);
  if (!pack.empty()) {
    OpenKELVOFile(pack);
    return;
  }
  UnloadLoading();
  cmdOptions_Click();
}

void frmMain::PrepareLook() {
  DelWindowCaption(this);
  detail->cmdPicture_MousDown();
  panel->SetHeight(picInstallProgrress->height());
}

void frmMain::ReadSettings() {
  const auto setting = [this](const char* key, const char* defaultValue) {
    return basIni::INIRead(surroundings_.files, iniPath_, "Settings", key, defaultValue);
  };
  session_.SAInstallDir = setting("SA_InstallDir", "");
  const std::string music = setting("PlayMusic", "1");
  const auto isOn = Text::WholeNumber(music);
  if (!isOn) Fail("kelvo.ini: PlayMusic \"", music, "\" is no number");
  picSAInstallDir->SetMusic(Text::CheckedInt16(*isOn, "PlayMusic"));
}

void frmMain::FindGameDirectory() {
  if (session_.SAInstallDir.empty()) {
    session_.SAInstallDir =
        basRegistry::FindGameDirectory(surroundings_.files, surroundings_.registry);
  }
  if (!basMain::IsGameDirectory(surroundings_.files, session_.SAInstallDir)) cmdOptions_Click();
  picSAInstallDir->ShowDirectory();
}

void frmMain::closeEvent(QCloseEvent* event) {
  event->setAccepted(Form_Unload() == Unload::kDone);
}

frmMain::Unload frmMain::Form_Unload() {
  Unload outcome = Unload::kDone;
  Trapped("frmMain.Form_Unload", [&] {
    if (session_.InstallRunning) {
      if (!AskToLeaveRun()) {
        outcome = Unload::kCancelled;
        return;
      }
      surroundings_.sound.StopMOD();
      // At once: the run is cut off wherever it stands, and nothing is written any more.
      std::_Exit(EXIT_SUCCESS);
    }
    surroundings_.sound.StopMOD();
    lists->StopWheelHook();
    basMinMax::UnhookMinMax(this);
    WritePosition();
    if (!tempDir_.path.empty()) basMain::RemoveTempDir(surroundings_.files, tempDir_);
  });
  if (outcome == Unload::kDone) UnloadLoading();
  return outcome;
}

bool frmMain::AskToLeaveRun() {
  return surroundings_.messages.Confirm(
      this,
      "Die Installation ist noch nicht abgeschlossen.\r\n"
      "Wenn Sie dieses Programm jetzt schließen ist Ihre GTA San Andreas Installation "
      "möglicherweise zerstört.\r\n"
      "\r\n"
      "Wirklich beenden?",
      "KELVO Beenden");
}

void frmMain::WritePosition() {
  // Where nobody minimises windows, one that was asked to go stays on the screen.
  const bool isAway = isMinimized() && !windowHandle()->isExposed();
  if (isAway || isMaximized() || isFullScreen()) return;
  const auto number = [](int pixels) { return Text::CheckedInt16(pixels, "the window's place"); };
  const WindowPosition place{number(x()), number(y()), number(width()), number(height())};
  basIni::INIWrite(surroundings_.files, iniPath_, "Settings", "Position", place.Text());
}
