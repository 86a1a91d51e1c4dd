// The main window as the host of the engine: what an install run and the opening of a pack show.

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScopeGuard>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "controls/tc_PBar.h"
#include "core/basDebugLog.h"
#include "install/InstallRun.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/window/basMinMax.h"
#include "ui/CatalogueLists.h"
#include "ui/EngineText.h"
#include "ui/HtmlStrip.h"
#include "ui/InstallQuestions.h"
#include "ui/OptionsPage.h"
#include "ui/ProgressPage.h"
#include "ui/SkinInputs.h"
#include "ui/SlidingPanel.h"
#include "ui/TitleLabel.h"
#include "ui/frmLoading.h"
#include "ui/frmMain.h"

namespace {

/// Shortest time between two rounds of pending events, in milliseconds: that of a frame. The
/// engine asks after every line and every block, and each round may paint.
constexpr qint64 kFrame = 16;

constexpr int kSmallestWidthWithPack = 600;
constexpr int kSmallestHeightWithoutPage = 250;

}  // namespace

void frmMain::cmdInstall_Click() {
  Trapped("frmMain.cmdInstall_Click", [&] {
    // A second click, before the panel has come up and disabled the button; or one while a pack
    // is being opened, and the catalogue isn't whole.
    if (runIsOn_ || openingIsOn_) return;
    PlayClick();
    if (picSAInstallDir->txtSAInstallDir->text().isEmpty()) {
      cmdOptions_Click();
      return;
    }
    // A run that failed has left this on.
    session_.InstallRunning = false;
    if (!TakeGameDirectory()) return;
    runIsOn_ = true;
    const auto over = qScopeGuard([this] {
      runIsOn_ = false;
      runLock_.reset();
    });
    if (!MayInstall()) return;
    RunInstall(session_);
  });
}

/// Looks ahead at the run, and asks the player about what isn't as he'd expect. Events run
/// meanwhile: a choice that has changed by the end is looked at again, another game directory, of
/// which this run has no lock, ends it.
bool frmMain::MayInstall() {
  auto hide = qScopeGuard([this] { HideProgressPage(); });
  // To the player this is the install already: closing the window asks first.
  session_.InstallRunning = true;
  const auto over = qScopeGuard([this] { session_.InstallRunning = false; });
  const std::string directory = session_.SAInstallDir;
  const auto choice = [this] {
    return std::pair(session_.ModPackIMG.IMGFile(), ScriptsToRun(session_.Pack));
  };
  for (;;) {
    const auto before = choice();
    const std::optional<QString> question = InstallQuestions::AboutFindings(CheckedPack());
    const std::vector<OutsideDeed> deeds = DeedsOutside(session_);
    if (session_.SAInstallDir != directory) return false;
    if (before != choice()) continue;
    const QStringList lines = InstallQuestions::LinesOf(session_.Pack, deeds);
    const QString title = MessageBoxes::DefaultTitle();
    if (question && !surroundings_.messages.Confirm(this, *question, title)) return false;
    if (!lines.isEmpty() && !surroundings_.messages.Consent(this, lines, title)) return false;
    hide.dismiss();
    return true;
  }
}

/// A check that can't be done has found nothing: the run itself tells.
std::vector<PackFinding> frmMain::CheckedPack() {
  constexpr std::size_t kWhole = 100;
  std::vector<PackFinding> findings;
  const bool isTicked = ScriptsToRun(session_.Pack).size() > 1;
  Trapped("frmMain.CheckedPack", [&] {
    findings = CheckPack(session_, [this, isTicked](std::size_t done, std::size_t count) {
      if (count == 0) return;
      if (done == 0) {
        // As in a run, only ticked mods bring the page up.
        if (isTicked) ShowProgressPage();
        session_.SetStatus(
            "Pr\xFC"
            "fe Modpack...");
      }
      SetModProgressMax(kWhole);
      SetModProgress(static_cast<std::int32_t>(kWhole * done / count));
    });
  });
  for (const PackFinding& finding : findings) {
    basDebugLog::LogError("frmMain.CheckedPack", finding.name + ": " + finding.cause);
  }
  return findings;
}

bool frmMain::TakeGameDirectory() {
  runLock_.emplace(surroundings_.files, session_.SAInstallDir, "KELVO");
  const auto other = runLock_->Other();
  if (!other) return true;
  runLock_.reset();
  const QString who =
      other->program.empty()
          ? "ein anderes Programm"
          : QString("%1 (Prozess %2)").arg(ToQString(other->program)).arg(other->process);
  surroundings_.messages.Stop(this, "In dieses Spielverzeichnis installiert gerade " + who + ".",
                              MessageBoxes::DefaultTitle());
  return false;
}

void frmMain::SetStatus(const std::string& text) {
  picInstallProgrress->SetStatus(ToQString(text));
  log_.StatusChanged(text);
}

void frmMain::SetModProgressMax(std::int32_t max) {
  picInstallProgrress->pBarFortschrittMod->SetMax(Text::CheckedInt16(max, "the bar of the mod"));
}

void frmMain::SetModProgress(std::int32_t value) {
  picInstallProgrress->pBarFortschrittMod->SetValue(
      Text::CheckedInt16(value, "the bar of the mod"));
}

void frmMain::SetTotalProgressMax(std::int32_t max) {
  tc_PBar& bar = *picInstallProgrress->pBarFortschritt;
  bar.SetMin(0);
  bar.SetMax(Text::CheckedInt16(max, "the bar of the run"));
}

void frmMain::SetTotalProgress(std::int32_t value) {
  picInstallProgrress->pBarFortschritt->SetValue(Text::CheckedInt16(value, "the bar of the run"));
}

void frmMain::DoEvents() {
  if (sinceEvents_.isValid() && sinceEvents_.elapsed() < kFrame) return;
  QCoreApplication::processEvents();
  sinceEvents_.start();
}

void frmMain::ShowProgressPage() {
  panel->BringToFront(picInstallProgrress);
  panel->EnableUp();
}

void frmMain::ShowFinalMessage(const std::string& text) {
  // The message may stand for long, and nothing is changed any more.
  runLock_.reset();
  surroundings_.messages.Information(this, ToQString(text), MessageBoxes::DefaultTitle());
}

void frmMain::HideProgressPage() {
  panel->DisableUp();
  panel->EnableDown();
}

void frmMain::OpenKELVOFile(const std::string& path) {
  // Events run inside an opening. Another one in there would read two packs into one catalogue.
  if (openingIsOn_) return;
  openingIsOn_ = true;
  const auto over = qScopeGuard([this] { openingIsOn_ = false; });
  bool isPack = false;
  Trapped("frmMain.OpenKELVOFile", [&] {
    isPack = session_.ModPackIMG.Load(path);
    if (isPack) {
      ShowLoading();
      DoEvents();
      ReadCatalogue();
      if (session_.Pack.ModTypes.size() > 1) ClickFirstType();
    }
    UnloadLoading();
    lists->DrawTypeList();
    ShowPage();
    SetMinimumSize(kSmallestWidthWithPack, session_.Pack.HTMLHeight + kSmallestHeightWithoutPage);
  });
  if (isPack) return;
  // The pack that was open before is left in the lists, but its payload can't be reached any more.
  const std::string name = path.substr(path.find_last_of("\\/") + 1);
  lblTitel->SetCaption("Kein Modpack: " + PathToQString(name));
}

void frmMain::ReadCatalogue() {
  const PackIndex index(surroundings_.files, session_.ModPackIMG, session_.TempDir,
                        [this](const std::string& text, const std::string& title) {
                          surroundings_.messages.Plain(this, ToQString(text), ToQString(title));
                        });
  lblTitel->SetCaption(ToQString(index.Title()));
  index.ReadInto(session_.Pack, [this] { DoEvents(); });
}

void frmMain::ShowLoading() {
  if (loading_ == nullptr) loading_ = std::make_unique<frmLoading>();
  loading_->show();
  OwnLoading();
}

/// The splash stays in front of the window, and goes with it.
void frmMain::OwnLoading() {
  if (loading_ == nullptr || loading_->windowHandle() == nullptr || windowHandle() == nullptr) {
    return;
  }
  loading_->windowHandle()->setTransientParent(windowHandle());
}

void frmMain::UnloadLoading() {
  if (loading_ == nullptr) return;
  loading_->hide();
  // Not at once: an event may have come in while it was being shown.
  loading_.release()->deleteLater();
}

void frmMain::ClickFirstType() const {
  // Where the first row is in a list that isn't scrolled. In one that is, another row lies there
  // and is selected, and so it stays.
  constexpr float kBesideTheTicks = 31;
  lists->picTypeList_MouseDown(1, 0, kBesideTheTicks, 1);
}

void frmMain::ShowPage() {
  Catalogue& pack = session_.Pack;
  html->setVisible(!pack.HTML.empty());
  if (pack.HTML.empty()) {
    pack.HTMLHeight = 0;
    return;
  }
  html->resize(html->width(), pack.HTMLHeight);
  const std::string path = DosPath::Join(session_.TempDir, "html.htm");
  surroundings_.files.WriteWhole(path, pack.HTML + "\r\n");
  html->SetSilent(true);
  // At the start the page comes as soon as the window is there, which doesn't wait for it.
  if (isVisible()) {
    html->Navigate(path);
  } else {
    pageToCome_ = path;
  }
  Form_Resize();
}

void frmMain::ShowPageToCome() {
  Trapped("frmMain.html_Navigate", [&] {
    if (!pageToCome_.empty()) html->Navigate(std::exchange(pageToCome_, {}));
  });
}

void frmMain::SetMinimumSize(int width, int height) {
  basMinMax::UnhookMinMax(this);
  const int needed = Layout::SmallestHeight(session_.Pack.HTMLHeight);
  const int smallest = std::max(height, needed);
  // A limit waits for the next change of size, but a window too low for its page can't be used.
  if (this->height() < needed) GrowTo(smallest);
  basMinMax::HookMinMax(this, width, smallest);
}

/// The lower edge, with the buttons, stays on the screen: on its free part, if that is high enough.
/// Before the first showing the toolkit knows the window's place, but not its screen.
void frmMain::GrowTo(int height) {
  if (isMaximized() || isFullScreen()) return;
  const QScreen* place =
      windowHandle() != nullptr ? screen() : QGuiApplication::screenAt(frameGeometry().center());
  if (place == nullptr) place = QGuiApplication::primaryScreen();
  const bool isRoomy = height <= place->availableGeometry().height();
  const QRect desk = isRoomy ? place->availableGeometry() : place->geometry();
  const int possible = std::min(height, desk.height());
  setGeometry(x(), std::min(y(), desk.bottom() + 1 - possible), width(), possible);
}
