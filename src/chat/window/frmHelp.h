#pragma once

#include <QPlainTextEdit>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <deque>
#include <random>
#include <string>

#include "chat/IRC.h"
#include "chat/IRCEvents.h"
#include "controls/Skin.h"
#include "controls/skinBtn.h"
#include "platform/window/WindowDrag.h"

/// The help chat: a small window in which the user talks with the community on one fixed channel.
/// It connects as soon as it is made and leaves the channel when it is closed. It lives beside the
/// main window, and outlives it.
class frmHelp : public QWidget, private IRCEvents {
  Q_OBJECT

 public:
  /// Where the server listens. The port is decimal text.
  struct Server {
    std::string host;
    std::string port = "6667";
  };
  /// The server that the build was configured for.
  static Server BuildServer();

  /// Shows the one chat window, made anew if none is open, in front of `owner` but not modally.
  /// The owner may go; the chat stays.
  static frmHelp* Open(QWidget* owner);

  explicit frmHelp(const Server& server = BuildServer());
  ~frmHelp() override;
  frmHelp(const frmHelp&) = delete;
  frmHelp& operator=(const frmHelp&) = delete;
  frmHelp(frmHelp&&) = delete;
  frmHelp& operator=(frmHelp&&) = delete;

  /// Appends one line to the message box: a line break, `sender`, two tabs, ":" and `text`, both
  /// Windows-1252 bytes. They are plain text, whatever they hold. The box shows what was added as
  /// soon as the events at hand are done: of ten thousand lines in one read, each scrolled to by
  /// itself, a server could make a standstill of seconds. It keeps the last 5,000 lines, and of a
  /// line the first 2,000 bytes of either: four times what a line of the protocol has.
  void AddMessage(const std::string& text, const std::string& sender);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void PlaceControls();
  void Form_Load(const Server& server);
  void DrawNickName();
  void ShowInFrontOf(QWidget* owner);

  void TakeOutLineEnds();
  void ShowAdded();
  void ShowWhatIsKept();
  void cmdSend_Click();
  void cmdClose_Click();
  bool txtNachricht_Event(QEvent& event);
  bool txtNachricht_KeyDown(const QKeyEvent& key);
  void DropHint();

  void OnConnect() override;
  void OnClose() override;
  void OnError(std::int16_t Number, Text Description, std::int32_t sCode, Text Source,
               Text HelpFile, std::int32_t HelpContext, bool CancelDisplay) override;
  void OnReady() override;
  void OnDataArrival(Text line, const std::vector<std::string>& Words, Text target,
                     Text text) override;
  void OnJoinOther(Text channel, Text nick, Text ident, Text host) override;
  void OnPartOther(Text channel, Text nick, Text ident, Text host) override;
  void OnQuitOther(Text nick, Text ident, Text host, Text reason) override;
  void OnKick(Text channel, Text nick, Text ident, Text host, Text reason) override;
  void OnNickChange(Text oldNick, Text newNick) override;
  void OnNickChangeOther(Text oldNick, Text newNick) override;
  void OnNickInUse(Text refusedNick) override;
  void OnBan(Text channel, Text nick, Text ident, Text host, Text mask) override;
  void OnChanBanned(Text channel) override;
  void OnUnBan(Text channel, Text nick, Text ident, Text host, Text mask) override;

  QPlainTextEdit* txtMessages;
  QPlainTextEdit* txtNachricht;
  skinBtn* cmdSend;
  skinBtn* cmdClose;
  SkinPicture header_{"chat_header"};
  std::deque<QString> added_;  // lines of the messages that aren't shown yet
  QString tag_ = "1";          // of txtNachricht: "1" while it shows its hint
  std::mt19937 random_;
  QPointer<QWidget> owner_;
  WindowDrag drag_;

  ::IRC IRC_{*this};
};
