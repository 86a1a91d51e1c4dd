#include "ui/frmMain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QWindow>

#include "chat/window/frmHelp.h"
#include "controls/Fonts.h"
#include "controls/SizeGrip.h"
#include "controls/Skin.h"
#include "controls/SkinLooks.h"
#include "controls/ngBtn.h"
#include "controls/skinBtn.h"
#include "core/BuildConfig.h"
#include "core/basDebugLog.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"
#include "sound/Sound.h"
#include "ui/BorderlessFrame.h"
#include "ui/CatalogueLists.h"
#include "ui/DetailView.h"
#include "ui/EngineText.h"
#include "ui/HtmlStrip.h"
#include "ui/NativePath.h"
#include "ui/OptionsPage.h"
#include "ui/PictureSurface.h"
#include "ui/ProgressPage.h"
#include "ui/SkinInputs.h"
#include "ui/SlidingPanel.h"
#include "ui/TitleLabel.h"
#include "ui/frmAbout.h"
#include "ui/frmLoading.h"

namespace {

constexpr ColourNumber kBackColor = 11904415;
constexpr ColourNumber kWhite = 16777215;
constexpr ColourNumber kTitleShadow = 2497050;
constexpr ColourNumber kCreditColor = 14999516;
constexpr QSize kMainButton(88, 31);
constexpr int kMainButtonFocus = 3;
constexpr int kGlyphPixels = 11;

void SetBackground(QWidget& surface) {
  surface.setAutoFillBackground(true);
  QPalette colours = surface.palette();
  colours.setColor(QPalette::Window, Colours::ToQColor(kBackColor));
  surface.setPalette(colours);
}

/// The sizes that window managers and task bars ask for.
QIcon ProgramIcon() {
  QIcon icon;
  for (const char* const size : {"16", "32", "48"}) {
    icon.addFile(QStringLiteral(":/skin/kelvo_%1.png").arg(size));
  }
  return icon;
}

/// The clickable area over the logo.
class LinkArea : public QWidget {
 public:
  LinkArea(QWidget* parent, std::function<void()> onPress)
      : QWidget(parent), onPress_(std::move(onPress)) {
    setCursor(Qt::PointingHandCursor);
  }

 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override { onPress_(); }

 private:
  std::function<void()> onPress_;
};

}  // namespace

frmMain::frmMain(Surroundings surroundings, std::unique_ptr<frmLoading> loading)
    : surroundings_(std::move(surroundings)),
      session_(surroundings_.files, *this, surroundings_.shell, surroundings_.TempDir),
      log_(surroundings_.files, surroundings_.programFolder),
      iniPath_(DosPath::Join(surroundings_.programFolder, "kelvo.ini")),
      loading_(std::move(loading)) {
  CreateFrame();
  CreateTitleArea();
  CreateLists();
  CreateButtonBar();
  CreatePanel();
  SetTabOrder();
  CreateShortcuts();
  for (QTimer* const timer : {&pageTimer_, &dropTimer_}) {
    timer->setSingleShot(true);
    timer->setInterval(0);
  }
  connect(&pageTimer_, &QTimer::timeout, this, &frmMain::ShowPageToCome);
  connect(&dropTimer_, &QTimer::timeout, this, &frmMain::OpenDroppedPack);
  // Away from the button, or from the window, the key is let go for something else.
  connect(qApp, &QApplication::focusChanged, this, [this] { heldBySpace_ = nullptr; });
}

frmMain::~frmMain() = default;

void frmMain::CreateFrame() {
  setObjectName("frmMain");
  setWindowTitle("moddock // modpack");
  setWindowIcon(ProgramIcon());
  SetBackground(*this);
  setAcceptDrops(true);
  resize(Layout::kDesignSize);
  frame_ = new BorderlessFrame(this);
  SizeGrip1 = new SizeGrip(this);
  SizeGrip1->setObjectName("SizeGrip1");
  SizeGrip1->setGeometry(640, 549, 16, 16);
}

void frmMain::CreateTitleArea() {
  const auto windowButton = [this](const char* name, const char* glyph, const QString& accessible,
                                   int left, void (frmMain::*onClick)()) {
    auto* const button = new skinBtn(this);
    button->setObjectName(name);
    button->setGeometry(left, 8, 15, 15);
    SkinLooks::ApplyWindowLook(*button);
    SkinLooks::SetFont(*button, Fonts::Marlett(kGlyphPixels));
    button->SetCaption(glyph);
    button->setAccessibleName(accessible);
    button->SetDrawFocusRect(true);
    connect(button, &skinBtn::Click, this, onClick);
    return button;
  };
  cmdClose = windowButton("cmdClose", "r", "Schließen", 646, &frmMain::cmdClose_Click);
  cmdMinimize = windowButton("cmdMinimize", "0", "Minimieren", 628, &frmMain::cmdMinimize_Click);

  lblDockLink = new LinkArea(this, [this] { cmdDockLink_Click(); });
  lblDockLink->setObjectName("lblDockLink");
  lblDockLink->setGeometry(15, 18, 143, 20);

  lblTitel2 = new TitleLabel(this, kTitleShadow);
  lblTitel2->setObjectName("lblTitel2");
  lblTitel2->HideFromReaders();
  lblTitel = new TitleLabel(this, kWhite);
  lblTitel->setObjectName("lblTitel");
  connect(lblTitel, &TitleLabel::Change, this, [this] {
    Trapped("frmMain.lblTitel_Change", [&] { lblTitel2->SetCaption(lblTitel->Caption()); });
  });
}

void frmMain::CreateLists() {
  html = new HtmlStrip(this, surroundings_.files, surroundings_.shell);
  html->setObjectName("html");
  html->setGeometry(46, 56, 119, 93);
  html->hide();
  lists = new CatalogueLists(
      this, session_.Pack,
      {[this] { PlayClick(); }, [this](const std::string& text) { detail->SetDescription(text); },
       [this](const std::string& name) { detail->SetPicture(name); }});
  detail = new DetailView(this, surroundings_.files, session_.ModPackIMG, session_.TempDir,
                          [this] { PlayClick(); });
}

ngBtn* frmMain::CreateMainButton(const char* name, const char* picture, const QString& caption,
                                 int left, void (frmMain::*onClick)()) const {
  auto* const button = new ngBtn(picButtons);
  button->setObjectName(name);
  button->setGeometry({{left, 0}, kMainButton});
  connect(button, &ngBtn::DensityChanged, button, [button, picture](double ratio) {
    const auto look = [&](const char* state) {
      return Skin::Picture(QStringLiteral("button_%1_%2").arg(picture, state), ratio);
    };
    button->SetPicMouseUpOff(look("up"));
    button->SetPicMouseOverOff(look("over"));
    button->SetPicMouseDownOff(look("down"));
  });
  button->SetFontMouseUpOff(Fonts::Tahoma());
  button->SetFontMouseOverOff(Fonts::Tahoma());
  button->SetFontMouseDownOff(Fonts::Tahoma());
  button->SetForeColorMouseDownOff(kWhite);
  button->SetCaption(caption);
  button->SetHasFocusRect(true);
  button->SetFocusDistance(kMainButtonFocus);
  button->setFocusPolicy(Qt::StrongFocus);
  connect(button, &ngBtn::Click, this, onClick);
  return button;
}

void frmMain::CreateButtonBar() {
  picButtons = new QWidget(this);
  picButtons->setObjectName("picButtons");
  picButtons->setGeometry(106, 532, 460, 51);
  SetBackground(*picButtons);
  cmdInstall = CreateMainButton("cmdInstall", "install", "Install", 0, &frmMain::cmdInstall_Click);
  cmdOptions =
      CreateMainButton("cmdOptions", "options", "Optionen", 92, &frmMain::cmdOptions_Click);
  cmdHelp = CreateMainButton("cmdHelp", "help", "Hilfe", 186, &frmMain::cmdHelp_Click);
  cmdAbout = CreateMainButton("cmdAbout", "about", "Über", 279, &frmMain::cmdAbout_Click);
  cmdExit = CreateMainButton("cmdExit", "exit", "Ende", 372, &frmMain::cmdExit_Click);

  cmdDockLink = new skinBtn(picButtons);
  cmdDockLink->setObjectName("cmdDockLink");
  cmdDockLink->setGeometry(296, 34, 75, 15);
  SkinLooks::ApplyLinkLook(*cmdDockLink);
  SkinLooks::SetFont(*cmdDockLink, Fonts::Tahoma());
  cmdDockLink->SetCaption("moddock");
  cmdDockLink->SetDrawFocusRect(true);
  connect(cmdDockLink, &skinBtn::Click, this, &frmMain::cmdDockLink_Click);

  auto* const lblAbout = new QLabel("KELVO, das Installationsprogramm von", picButtons);
  lblAbout->setObjectName("lblAbout");
  lblAbout->setGeometry(92, 36, 203, 13);
  lblAbout->setFont(Fonts::Tahoma());
  // On one line with the link beside it.
  lblAbout->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  lblAbout->setContentsMargins(0, 0, 0, 2);
  QPalette colours = lblAbout->palette();
  colours.setColor(QPalette::WindowText, Colours::ToQColor(kCreditColor));
  lblAbout->setPalette(colours);
}

void frmMain::CreatePanel() {
  panel = new SlidingPanel(this, [this](bool Enable) { DisableForPanel(Enable); });
  panel->picPanel->setGeometry(239, 147, SlidingPanel::kWidth, 95);
  picInstallProgrress = new ProgressPage(panel->picPanel);
  picSAInstallDir =
      new OptionsPage(panel->picPanel, session_, surroundings_.files, iniPath_,
                      {.PlayClick = [this] { PlayClick(); },
                       .PlayMOD = [this] { surroundings_.sound.PlayMOD(); },
                       .StopMOD = [this] { surroundings_.sound.StopMOD(); },
                       .HidePanel = [this] { panel->EnableDown(); },
                       .OpenKELVOFile = [this](const std::string& path) { OpenKELVOFile(path); },
                       .MessageBox =
                           [this](const QString& text, const QString& title) {
                             surroundings_.messages.Stop(this, text, title);
                           }});
}

void frmMain::SetTabOrder() {
  const std::vector<QWidget*> order = {html,
                                       lists->picTypeList,
                                       lists->picModList,
                                       detail->cmdPicture,
                                       detail->cmdDescription,
                                       detail->txtDescription,
                                       cmdInstall,
                                       cmdOptions,
                                       cmdHelp,
                                       cmdAbout,
                                       cmdExit,
                                       cmdDockLink,
                                       cmdMinimize,
                                       cmdClose};
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void frmMain::CreateShortcuts() {
  for (const auto& [key, button] :
       {std::pair(Qt::Key_I, cmdInstall), std::pair(Qt::Key_O, cmdOptions),
        std::pair(Qt::Key_H, cmdHelp), std::pair(Qt::Key_U, cmdAbout),
        std::pair(Qt::Key_Udiaeresis, cmdAbout), std::pair(Qt::Key_E, cmdExit)}) {
    auto* const shortcut = new QShortcut(Qt::ALT | key, this);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, button, [pressed = button] {
      if (pressed->isEnabled()) pressed->Press();
    });
  }
}

void frmMain::DisableForPanel(bool Enable) const {
  lists->picTypeList->setEnabled(Enable);
  lists->picModList->setEnabled(Enable);
  detail->cmdDescription->SetEnabled(Enable);
  detail->cmdPicture->SetEnabled(Enable);
  detail->picDescPic->setEnabled(Enable);
  cmdInstall->SetEnabled(Enable);
  cmdOptions->SetEnabled(Enable);
  cmdAbout->SetEnabled(Enable);
  cmdExit->SetEnabled(Enable);
  // These two stay usable, but the panel covers them: nobody would see where the focus is.
  cmdHelp->setFocusPolicy(Enable ? Qt::StrongFocus : Qt::NoFocus);
  cmdDockLink->setFocusPolicy(Enable ? Qt::StrongFocus : Qt::NoFocus);
}

bool frmMain::IsMusicTicked() const {
  return picSAInstallDir->chkMusik->Value() != 0;
}

void frmMain::PlayClick() {
  surroundings_.sound.PlayResWave("CLICK");
}

Layout::OwnSizes frmMain::OwnSizes() const {
  return {.htmlHeight = html->height(),
          .cmdPicture = detail->cmdPicture->size(),
          .cmdDescription = detail->cmdDescription->size(),
          .picButtons = picButtons->size(),
          .scrollBarWidth = lists->scrModList->width(),
          .lblDockLink = lblDockLink->size(),
          .cmdMinimize = cmdMinimize->size(),
          .cmdClose = cmdClose->size(),
          .lblTitel = lblTitel->size()};
}

void frmMain::MoveControl(const Layout::Placement& placement) {
  using Layout::Control;
  const auto widget = [this](Control control) -> QWidget* {
    switch (control) {
      case Control::html:
        return html;
      case Control::picTypeList:
        return lists->picTypeList;
      case Control::picModList:
        return lists->picModList;
      case Control::cmdPicture:
        return detail->cmdPicture;
      case Control::cmdDescription:
        return detail->cmdDescription;
      case Control::picDescPic:
        return detail->picDescPic;
      case Control::picBuffer:
        return nullptr;  // an image that takes its surface's size
      case Control::picButtons:
        return picButtons;
      case Control::scrModTypeList:
        return lists->scrModTypeList;
      case Control::scrModList:
        return lists->scrModList;
      case Control::lblDockLink:
        return lblDockLink;
      case Control::cmdMinimize:
        return cmdMinimize;
      case Control::cmdClose:
        return cmdClose;
      case Control::lblTitel:
        return lblTitel;
      case Control::lblTitel2:
        return lblTitel2;
    }
    return nullptr;
  };
  if (QWidget* const moved = widget(placement.control)) moved->setGeometry(placement.box);
}

void frmMain::Form_Resize() {
  Trapped("frmMain.Form_Resize", [&] {
    const int W = width();
    const int H = height();
    // Ahead of what fails in a window that is too small for its page: by these it is moved, closed
    // and made larger.
    PaintTitleStrip();
    PaintLogo();
    PlaceTitleArea();
    panel->Place(W, H);
    Layout::MainArea(W, H, session_.Pack.HTMLHeight, OwnSizes(),
                     [this](const Layout::Placement& placement) { MoveControl(placement); });
    detail->SetPicture(detail->Tag());
    detail->txtDescription->setGeometry(detail->picDescPic->rect());
    lists->DrawModList();
    lists->DrawTypeList();
  });
}

void frmMain::PaintTitleStrip() {
  const qreal ratio = devicePixelRatioF();
  if (logo_.isNull() || logo_.devicePixelRatio() != ratio) {
    titleTile_ = Skin::Picture("title_tile", ratio);
    logo_ = Skin::WithoutMagenta(Skin::Picture("logo", ratio));
    logoWidth_ = qRound(QRegion(logo_.mask()).boundingRect().right() / ratio) + 1;
  }
  title_ = QPixmap((QSizeF(width(), Layout::kTitleStripHeight) * ratio).toSize());
  title_.setDevicePixelRatio(ratio);
  title_.fill(Colours::ToQColor(kBackColor));
  QPainter painter(&title_);
  for (const int x : Layout::TitleTiles(width())) painter.drawPixmap(x, 0, titleTile_);
  update(0, 0, width(), Layout::kTitleStripHeight);
}

void frmMain::PaintLogo() {
  QPainter(&title_).drawPixmap(Layout::Logo(width()), logo_);
}

void frmMain::PlaceTitleArea() {
  for (TitleLabel* const label : {lblTitel, lblTitel2}) {
    label->SetRoom(Layout::TitleRoom(width(), logoWidth_));
  }
  for (const Layout::Placement& placement : Layout::TitleArea(width(), OwnSizes())) {
    MoveControl(placement);
  }
}

void frmMain::paintEvent(QPaintEvent* /*event*/) {
  // On another screen since.
  if (!title_.isNull() && title_.devicePixelRatio() != devicePixelRatioF()) {
    PaintTitleStrip();
    PaintLogo();
  }
  QPainter(this).drawPixmap(0, 0, title_);
  if (!pageToCome_.empty()) pageTimer_.start();
}

void frmMain::resizeEvent(QResizeEvent* /*event*/) {
  Form_Resize();
}

void frmMain::mousePressEvent(QMouseEvent* event) {
  Form_MouseDown(event->button(), event->position().toPoint(), event->globalPosition().toPoint());
}

void frmMain::Form_MouseDown(Qt::MouseButton Button, const QPoint& place, const QPoint& onScreen) {
  Trapped("frmMain.Form_MouseDown", [&] {
    if (place.y() <= Layout::kTitleStripHeight) frame_->StartMove(Button, onScreen);
  });
}

void frmMain::mouseDoubleClickEvent(QMouseEvent* event) {
  Trapped("frmMain.Form_DblClick", [&] {
    const bool isOnStrip = event->position().y() <= Layout::kTitleStripHeight;
    if (!isOnStrip || event->button() != Qt::LeftButton) return;
    isMaximized() ? showNormal() : showMaximized();
  });
}

/// Whether the key is one that presses the main button that has the focus. Enter does at once,
/// Space when it is let go: a key that is held would go on in the panel.
bool frmMain::PressByKey(const QKeyEvent& key) {
  auto* const button = qobject_cast<ngBtn*>(focusWidget());
  const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  if (button == nullptr || (!isEnter && key.key() != Qt::Key_Space)) return false;
  if (key.isAutoRepeat()) return true;
  if (isEnter) {
    button->Press();
  } else {
    heldBySpace_ = button;
  }
  return true;
}

// What the focused control has left alone.
void frmMain::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  Trapped("frmMain.Form_KeyDown", [&] {
    event->setAccepted(PressByKey(*event));
    if (event->key() == Qt::Key_Escape && panel->Shows(picSAInstallDir)) {
      event->accept();
      picSAInstallDir->CloseIfRight();
    }
  });
}

void frmMain::keyReleaseEvent(QKeyEvent* event) {
  event->ignore();
  if (event->key() != Qt::Key_Space || event->isAutoRepeat()) return;
  const QPointer<ngBtn> held = std::exchange(heldBySpace_, nullptr);
  if (held != nullptr && held == focusWidget()) held->Press();
}

bool frmMain::event(QEvent* event) {
  // The window of the system is there, or is another one than before.
  if (event->type() == QEvent::Show || event->type() == QEvent::WinIdChange) {
    if (QWindow* const window = windowHandle()) {
      window->installEventFilter(this);
      frame_->Attach();
      OwnLoading();
    }
  }
  return QWidget::event(event);
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
  // Each character typed in the window, whichever control gets it.
  if (event->type() == QEvent::KeyPress) {
    Trapped("frmMain.Form_KeyPress", [&] {
      for (const char typed : FromQString(static_cast<QKeyEvent*>(event)->text())) {
        log_.CharacterTyped(typed);
      }
    });
  }
  return QWidget::eventFilter(watched, event);
}

void frmMain::cmdClose_Click() {
  Trapped("frmMain.cmdClose_Click", [&] {
    PlayClick();
    close();
  });
}

void frmMain::cmdExit_Click() {
  Trapped("frmMain.cmdExit_Click", [&] {
    PlayClick();
    close();
  });
}

void frmMain::cmdMinimize_Click() {
  Trapped("frmMain.cmdMinimize_Click", [&] {
    PlayClick();
    showMinimized();
  });
}

void frmMain::cmdDockLink_Click() {
  Trapped("frmMain.cmdDockLink_Click",
          [&] { surroundings_.shell.Open(std::string(BuildConfig::kCommunityUrl), ""); });
}

void frmMain::cmdOptions_Click() {
  Trapped("frmMain.cmdOptions_Click", [&] {
    PlayClick();
    panel->BringToFront(picSAInstallDir);
    panel->EnableUp();
  });
}

void frmMain::cmdHelp_Click() {
  Trapped("frmMain.cmdHelp_Click", [&] { frmHelp::Open(this); });
}

void frmMain::cmdAbout_Click() {
  Trapped("frmMain.cmdAbout_Click", [&] {
    PlayClick();
    if (about_ == nullptr) about_ = new frmAbout(this, surroundings_.shell);
    about_->show();
    about_->activateWindow();
  });
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
  Trapped("frmMain.dragEnterEvent", [&] {
    const QList<QUrl> urls = event->mimeData()->urls();
    const bool isPack =
        !urls.isEmpty() && urls.first().toLocalFile().endsWith(".kvpk", Qt::CaseInsensitive);
    if (!isPack || runIsOn_ || openingIsOn_) return;
    // It is read, and stays where it is.
    event->setDropAction(Qt::CopyAction);
    event->accept();
  });
}

void frmMain::dropEvent(QDropEvent* event) {
  Trapped("frmMain.dropEvent", [&] {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    droppedPack_ = NativePath::ToDosText(surroundings_.files,
                                         event->mimeData()->urls().value(0).toLocalFile());
    // Once the drop is over for the program that it came from.
    dropTimer_.start();
  });
}

void frmMain::OpenDroppedPack() {
  Trapped("frmMain.OpenDroppedPack", [&] { picSAInstallDir->OpenIfPack(droppedPack_); });
}
