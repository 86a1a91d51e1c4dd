#include "chat/window/frmHelp.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>
#include <QWindow>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "controls/Fonts.h"
#include "controls/Input.h"
#include "controls/Painting.h"
#include "controls/SkinLooks.h"
#include "controls/SkinScrollBar.h"
#include "controls/Twips.h"
#include "core/BuildConfig.h"
#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/window/DelWindowCaption.h"

namespace {

constexpr std::string_view kChannel = "#mod-community";
constexpr std::string_view kOwnNote = "-->";
constexpr std::string_view kIdentHost = "@help.kelvo";
constexpr int kEnter = 13;

// Twips.
constexpr int kWidth = 7545;
constexpr int kHeight = 5625;
// Pixels.
constexpr int kHeaderHeight = 52;
constexpr int kTextPixels = 13;
constexpr int kLettersPerTab = 8;

// A line without a blank costs the square of its length, and all of them the memory.
constexpr std::size_t kLongestShown = 2000;
constexpr int kMostLines = 5000;

constexpr QRgb kFormBack = qRgb(136, 143, 164);
constexpr QRgb kTextBack = qRgb(179, 184, 197);
constexpr QRgb kTextFore = qRgb(72, 82, 92);
constexpr QRgb kFrame = qRgb(23, 44, 66);

struct Box {
  int left;
  int top;
  int width;
  int height;
};

constexpr Box kMessages = {120, 930, 7305, 4155};
constexpr Box kNachricht = {120, 5190, 5535, 255};
constexpr Box kSend = {5760, 5190, 705, 255};
constexpr Box kClose = {6570, 5190, 855, 255};

QRect Pixels(const Box& box) {
  return {ToPixels(box.left), ToPixels(box.top), ToPixels(box.width), ToPixels(box.height)};
}

QString Shown(std::string_view text) {
  const QString shown = QString::fromStdU16String(Text::ToUtf16(text.substr(0, kLongestShown)));
  return text.size() > kLongestShown ? shown + u'\u2026' : shown;
}

std::string EngineText(const QString& text) {
  return Text::FromUtf8Lossy(text.toStdString());
}

// A line of the protocol ends where the first of these stands.
std::string WithoutLineEnds(std::string text) {
  std::erase_if(text, [](char letter) { return letter == '\r' || letter == '\n'; });
  return text;
}

std::uint32_t SeedFromClock() {
  return static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

QPalette Coloured(QPalette colours) {
  colours.setColor(QPalette::Base, kTextBack);
  colours.setColor(QPalette::Text, kTextFore);
  return colours;
}

QPlainTextEdit* TextBox(QWidget* parent, const Box& box, const QString& name) {
  auto* const text = new QPlainTextEdit(parent);
  text->setObjectName(name);
  text->setGeometry(Pixels(box));
  text->setFont(Fonts::Tahoma(kTextPixels));
  text->setPalette(Coloured(text->palette()));
  text->setFrameStyle(QFrame::NoFrame);
  text->setTabChangesFocus(true);
  text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  text->document()->setDocumentMargin(1);
  text->setTabStopDistance(kLettersPerTab * text->fontMetrics().averageCharWidth());
  return text;
}

skinBtn* Button(QWidget* parent, const Box& box, const QString& name, const QString& caption) {
  auto* const button = new skinBtn(parent);
  button->setObjectName(name);
  button->setGeometry(Pixels(box));
  button->SetCaption(caption);
  SkinLooks::SetFont(*button, Fonts::Tahoma());
  SkinLooks::ApplyWindowLook(*button);
  button->SetDrawFocusRect(true);
  return button;
}

}  // namespace

frmHelp::Server frmHelp::BuildServer() {
  return {std::string(BuildConfig::kIrcHost)};
}

frmHelp* frmHelp::Open(QWidget* owner) {
  static QPointer<frmHelp> window;
  if (window.isNull()) {
    window = new frmHelp();
    window->setAttribute(Qt::WA_DeleteOnClose);
  }
  window->ShowInFrontOf(owner);
  return window;
}

frmHelp::frmHelp(const Server& server)
    : txtMessages(TextBox(this, kMessages, "txtMessages")),
      txtNachricht(TextBox(this, kNachricht, "txtNachricht")),
      cmdSend(Button(this, kSend, "cmdSend", "Senden")),
      cmdClose(Button(this, kClose, "cmdClose", "Schließen")),
      random_(SeedFromClock()) {
  setWindowTitle("moddock // mod-pack Hilfe");
  QPalette colours = palette();
  colours.setColor(QPalette::Window, kFormBack);
  setPalette(colours);
  connect(&drag_, &WindowDrag::Ended, this, &QWidget::unsetCursor);
  PlaceControls();
  connect(cmdSend, &skinBtn::Click, this, &frmHelp::cmdSend_Click);
  connect(cmdClose, &skinBtn::Click, this, &frmHelp::cmdClose_Click);
  Form_Load(server);
}

frmHelp::~frmHelp() {
  txtNachricht->removeEventFilter(this);
  txtNachricht->viewport()->removeEventFilter(this);
}

void frmHelp::PlaceControls() {
  txtMessages->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  SkinScrollBar::Apply(*txtMessages->verticalScrollBar());
  txtMessages->setAccessibleName("Nachrichten");
  // It isn't read-only, on purpose: what the user notes in it concerns nobody.
  // What is undone would be kept beside what is shown.
  txtMessages->setUndoRedoEnabled(false);
  txtMessages->setMaximumBlockCount(kMostLines);
  txtMessages->setPlainText("KVPK Chat\n");
  txtNachricht->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  txtNachricht->setAccessibleName("Nachricht");
  txtNachricht->setAcceptDrops(false);  // a dropped text would mix with the hint
  txtNachricht->setPlainText("Gib hier deine Frage ein.");
  txtNachricht->installEventFilter(this);
  txtNachricht->viewport()->installEventFilter(this);
}

void frmHelp::Form_Load(const Server& server) {
  Trapped("frmHelp.Form_Load", [&] {
    DelWindowCaption(this);
    setFixedSize(ToPixels(kWidth), ToPixels(kHeight));
    DrawNickName();
    IRC_.SetIdent(IRC_.NickName() + std::string(kIdentHost));
    IRC_.SetInfo(WithoutLineEnds(EngineText(qEnvironmentVariable("computername"))));
    IRC_.SetServerHost(server.host);
    IRC_.SetServerPort(server.port);
    IRC_.DoConnect();
  });
}

void frmHelp::DrawNickName() {
  constexpr int kNumbers = 99;  // 00 to 98
  std::array<char, 3> number{};
  const int drawn = std::uniform_int_distribution(0, kNumbers - 1)(random_);
  (void)std::snprintf(number.data(), number.size(), "%02d", drawn);
  IRC_.SetNickName(std::string("KELVO_USER") + number.data());
}

// The system keeps an owned window in front of its owner, and would take it away with it; so the
// bond is cut as soon as the owner goes.
void frmHelp::ShowInFrontOf(QWidget* owner) {
  if (owner_ != nullptr) owner_->removeEventFilter(this);
  owner_ = owner;
  winId();  // makes the window of the system
  if (owner != nullptr) {
    owner->installEventFilter(this);
    windowHandle()->setTransientParent(owner->window()->windowHandle());
  }
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

void frmHelp::AddMessage(const std::string& text, const std::string& sender) {
  if (added_.empty()) {
    QMetaObject::invokeMethod(this, &frmHelp::ShowAdded, Qt::QueuedConnection);
  }
  if (added_.size() == kMostLines) added_.pop_front();
  added_.push_back("\n" + Shown(sender) + "\t\t:" + Shown(text));
}

void frmHelp::ShowAdded() {
  // The box forgets line by line, which takes longer than the rest.
  if (added_.size() == kMostLines) txtMessages->clear();
  QTextCursor end(txtMessages->document());
  end.movePosition(QTextCursor::End);
  QString lines;
  for (const QString& line : std::exchange(added_, {})) lines += line;
  end.insertText(lines);
  txtMessages->setTextCursor(end);  // scrolls down to it
}

// Sending.

// One message is one line: line ends are taken out of the box, even if nothing is sent then.
void frmHelp::TakeOutLineEnds() {
  QString typed = txtNachricht->document()->toRawText();
  const auto length = typed.size();
  typed.remove(QChar::ParagraphSeparator).remove(QChar::LineSeparator);
  if (typed.size() == length) return;
  txtNachricht->setPlainText(typed);
  txtNachricht->moveCursor(QTextCursor::End);
}

void frmHelp::cmdSend_Click() {
  const bool sent = Trapped("frmHelp.cmdSend_Click", [this] {
    TakeOutLineEnds();
    const std::string message = WithoutLineEnds(EngineText(txtNachricht->document()->toRawText()));
    if (::Text::Trim(message).empty() || tag_ == "1") return;
    IRC_.Say(std::string(kChannel), message);
    AddMessage(message, "");
    txtNachricht->clear();
  });
  if (!sent) QMetaObject::invokeMethod(this, &frmHelp::ShowWhatIsKept, Qt::QueuedConnection);
}

// The box has room for one line, and by now it shows the break that Enter has left behind.
void frmHelp::ShowWhatIsKept() {
  QTextCursor kept(txtNachricht->document());
  kept.movePosition(QTextCursor::End);
  if (kept.atBlockStart()) kept.movePosition(QTextCursor::PreviousCharacter);
  const QTextLine line = kept.block().layout()->lineForTextPosition(kept.positionInBlock());
  txtNachricht->verticalScrollBar()->setValue(kept.block().firstLineNumber() + line.lineNumber());
}

void frmHelp::cmdClose_Click() {
  Trapped("frmHelp.cmdClose_Click", [this] { IRC_.Part(std::string(kChannel)); });
  close();
}

bool frmHelp::eventFilter(QObject* watched, QEvent* event) {
  if (watched == owner_ && event->type() == QEvent::Hide && !event->spontaneous()) {
    windowHandle()->setTransientParent(nullptr);
  }
  if (watched == txtNachricht || watched == txtNachricht->viewport()) {
    return txtNachricht_Event(*event);
  }
  return QWidget::eventFilter(watched, event);
}

// True if the box doesn't get the event.
bool frmHelp::txtNachricht_Event(QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
      return txtNachricht_KeyDown(static_cast<const QKeyEvent&>(event));
    case QEvent::InputMethod:  // a letter made of several keys
      if (!static_cast<const QInputMethodEvent&>(event).commitString().isEmpty()) DropHint();
      return false;
    case QEvent::MouseButtonPress:
      DropHint();
      return false;
    default:
      return false;
  }
}

// A key that types a character, line break and backspace among them, reaches the box; any other,
// such as an arrow, does nothing in it. So Enter leaves a line break behind after a send, which the
// next send takes out. All of it kept on purpose.
bool frmHelp::txtNachricht_KeyDown(const QKeyEvent& key) {
  if (Input::KeyCode(key) == kEnter) cmdSend_Click();
  if (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) return false;  // moves the focus
  if (key.text().isEmpty() || key.key() == Qt::Key_Delete) return true;
  DropHint();
  return false;
}

void frmHelp::DropHint() {
  if (tag_ != "1") return;
  tag_.clear();
  txtNachricht->clear();
}

// What the server brings.

void frmHelp::OnConnect() {
  AddMessage("Verbindung mit dem Chat hergestellt!", std::string(kOwnNote));
}

void frmHelp::OnClose() {
  AddMessage("Die Verbindung wurde getrennt!", std::string(kOwnNote));
}

// Nothing of it shows: an attempt that fails is for developers to read of.
void frmHelp::OnError(std::int16_t Number, Text Description, std::int32_t /*sCode*/,
                      Text /*Source*/, Text /*HelpFile*/, std::int32_t /*HelpContext*/,
                      bool /*CancelDisplay*/) {
  basDebugLog::LogError("frmHelp.IRC_OnError", Concat("error ", Number, ": ", Description));
}

void frmHelp::OnReady() {
  IRC_.Join(std::string(kChannel));
}

void frmHelp::OnDataArrival(Text /*line*/, const std::vector<std::string>& Words, Text target,
                            Text text) {
  if (target == kChannel) AddMessage(text, ::IRC::UserNick(Words[0]));
}

void frmHelp::OnJoinOther(Text /*channel*/, Text nick, Text /*ident*/, Text /*host*/) {
  AddMessage(nick + " hat das Chat betreten!", std::string(kOwnNote));
}

void frmHelp::OnPartOther(Text /*channel*/, Text nick, Text /*ident*/, Text /*host*/) {
  AddMessage(nick + " hat das Chat verlassen!", std::string(kOwnNote));
}

void frmHelp::OnQuitOther(Text nick, Text /*ident*/, Text /*host*/, Text /*reason*/) {
  AddMessage(nick + " hat das Chat verlassen!", std::string(kOwnNote));
}

void frmHelp::OnKick(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                     Text /*reason*/) {
  AddMessage("Du wurdest aus dem Chat rausgeschmissen!", std::string(kOwnNote));
}

void frmHelp::OnNickChange(Text /*oldNick*/, Text newNick) {
  AddMessage("Du hei\xDFt jetzt " + newNick, std::string(kOwnNote));
}

void frmHelp::OnNickChangeOther(Text oldNick, Text newNick) {
  AddMessage(oldNick + " hat sich in " + newNick + " umbenannt!", std::string(kOwnNote));
}

// The new name is only stored: the server isn't told, and the registration stands still.
void frmHelp::OnNickInUse(Text /*refusedNick*/) {
  DrawNickName();
}

void frmHelp::OnBan(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/, Text /*mask*/) {
  AddMessage("Du wurdest aus dem Chat ausgesperrt!", std::string(kOwnNote));
}

void frmHelp::OnChanBanned(Text /*channel*/) {
  AddMessage("Du wurdest aus dem Chat ausgesperrt!", std::string(kOwnNote));
}

void frmHelp::OnUnBan(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                      Text /*mask*/) {
  AddMessage("Du darfst das Chat wieder betreten!", std::string(kOwnNote));
}

// The window itself.

bool frmHelp::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) txtNachricht->setFocus();
  return QWidget::event(event);
}

void frmHelp::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, header_.At(devicePixelRatioF()));
  for (const Box& box : {kMessages, kNachricht}) {
    Painting::Frame(painter, QRectF(Pixels(box)).adjusted(-1, -1, 1, 1), 1, QColor(kFrame));
  }
}

void frmHelp::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || event->position().y() > kHeaderHeight) return;
  setCursor(Qt::SizeAllCursor);
  drag_.Start(this, WindowDrag::kAllEdges, event->button(), event->globalPosition());
}
