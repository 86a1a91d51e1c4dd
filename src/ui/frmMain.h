#pragma once

#include <QElapsedTimer>
#include <QPixmap>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/StatusLog.h"
#include "core/basMain.h"
#include "install/InstallHost.h"
#include "install/InstallSession.h"
#include "install/PackCheck.h"
#include "install/RunLock.h"
#include "pack/Catalogue.h"
#include "platform/Registry.h"
#include "ui/Layout.h"
#include "ui/MessageBoxes.h"
#include "ui/frmLoading.h"

class BorderlessFrame;
class CatalogueLists;
class DetailView;
class FileSystem;
class HtmlStrip;
class OptionsPage;
class ProgressPage;
class ShellOpener;
class SizeGrip;
class Sound;
class SlidingPanel;
class TitleLabel;
class frmAbout;
class ngBtn;
class skinBtn;

/// What the main window is given by the program's start. All paths are DOS path text.
struct Surroundings {
  const FileSystem& files;
  ShellOpener& shell;
  Sound& sound;
  MessageBoxes messages;
  Registry::Source registry;
  std::string programFolder;
  std::string commandLine;
  std::string TempDir;
};

/// The main window: the catalogue of the open pack in two lists, the detail area, the sliding
/// panel and the bar of buttons, in a frame of its own. It is the engine's host while a pack is
/// opened and while an install runs.
class frmMain : public QWidget, public InstallHost {
  Q_OBJECT

 public:
  /// `loading`: the splash, if it is on screen already; the window takes it over.
  explicit frmMain(Surroundings surroundings, std::unique_ptr<frmLoading> loading = {});
  ~frmMain() override;
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;
  frmMain(frmMain&&) = delete;
  frmMain& operator=(frmMain&&) = delete;

  /// Loading: everything up to the window's first showing. Has a trap.
  void Form_Load();
  /// Opens a pack; the catalogue of the one before stays if it isn't an archive. Has a trap.
  void OpenKELVOFile(const std::string& path);
  /// Places everything anew. Has a trap.
  void Form_Resize();

  [[nodiscard]] InstallSession& Session() { return session_; }
  [[nodiscard]] const StatusLog& Log() const { return log_; }
  [[nodiscard]] bool IsMusicTicked() const;

  // The controls, by their parents.
  HtmlStrip* html = nullptr;
  SlidingPanel* panel = nullptr;
  OptionsPage* picSAInstallDir = nullptr;
  ProgressPage* picInstallProgrress = nullptr;
  QWidget* picButtons = nullptr;
  ngBtn* cmdInstall = nullptr;
  ngBtn* cmdOptions = nullptr;
  ngBtn* cmdHelp = nullptr;
  ngBtn* cmdAbout = nullptr;
  ngBtn* cmdExit = nullptr;
  skinBtn* cmdDockLink = nullptr;
  CatalogueLists* lists = nullptr;
  DetailView* detail = nullptr;
  skinBtn* cmdClose = nullptr;
  skinBtn* cmdMinimize = nullptr;
  SizeGrip* SizeGrip1 = nullptr;
  QWidget* lblDockLink = nullptr;
  TitleLabel* lblTitel = nullptr;
  TitleLabel* lblTitel2 = nullptr;

  void cmdInstall_Click();
  void cmdOptions_Click();
  void cmdHelp_Click();
  void cmdAbout_Click();
  void cmdExit_Click();
  void cmdClose_Click();
  void cmdMinimize_Click();
  void cmdDockLink_Click();

  // The engine's host.
  void SetStatus(const std::string& text) override;
  void SetModProgressMax(std::int32_t max) override;
  void SetModProgress(std::int32_t value) override;
  void SetTotalProgressMax(std::int32_t max) override;
  void SetTotalProgress(std::int32_t value) override;
  void DoEvents() override;
  void ShowProgressPage() override;
  void ShowFinalMessage(const std::string& text) override;
  void HideProgressPage() override;

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // The control tree.
  void CreateFrame();
  void CreateTitleArea();
  void CreateLists();
  void CreateButtonBar();
  void CreatePanel();
  void SetTabOrder();
  void CreateShortcuts();
  ngBtn* CreateMainButton(const char* name, const char* picture, const QString& caption, int left,
                          void (frmMain::*onClick)()) const;

  // Steps of `Form_Load`.
  void PlaceWindow();
  void Init();

  // Steps of `Init`.
  void EmptyCatalogue();
  void CreateTempDir();
  void OpenFirstPack();
  void PrepareLook();
  void ReadSettings();
  void FindGameDirectory();

  // Steps of `Form_Unload`.
  enum class Unload { kCancelled, kDone };
  Unload Form_Unload();
  [[nodiscard]] bool AskToLeaveRun();
  void WritePosition();

  void Form_MouseDown(Qt::MouseButton Button, const QPoint& place, const QPoint& onScreen);
  void PaintTitleStrip();
  void PaintLogo();
  void PlaceTitleArea();
  void ShowPageToCome();
  void GrowTo(int height);

  // Steps of `OpenKELVOFile`.
  void ShowLoading();
  void ReadCatalogue();
  void ClickFirstType() const;
  void UnloadLoading();
  void ShowPage();
  void SetMinimumSize(int width, int height);

  void MoveControl(const Layout::Placement& placement);
  [[nodiscard]] Layout::OwnSizes OwnSizes() const;
  [[nodiscard]] bool PressByKey(const QKeyEvent& key);
  void DisableForPanel(bool Enable) const;
  void OpenDroppedPack();
  void PlayClick();
  bool TakeGameDirectory();
  bool MayInstall();
  std::vector<PackFinding> CheckedPack();
  void OwnLoading();

  Surroundings surroundings_;
  InstallSession session_;
  StatusLog log_;
  std::string iniPath_;
  basMain::TakenTempDir tempDir_;
  std::optional<RunLock> runLock_;  // while a run changes the game
  BorderlessFrame* frame_ = nullptr;
  std::unique_ptr<frmLoading> loading_;
  QPointer<frmAbout> about_;
  QPixmap titleTile_;
  QPixmap logo_;
  int logoWidth_ = 0;       // of what is drawn in its picture
  QPixmap title_;           // strip and logo, as last painted
  std::string pageToCome_;  // of the pack opened at the start, DOS path text
  std::string droppedPack_;
  QPointer<ngBtn> heldBySpace_;  // clicks when the key is let go
  QTimer pageTimer_;
  QTimer dropTimer_;
  QElapsedTimer sinceEvents_;
  bool runIsOn_ = false;      // `cmdInstall_Click` is on the stack
  bool openingIsOn_ = false;  // `OpenKELVOFile` is
};
