#include <QApplication>
#include <QRegularExpression>
#include <QTest>
#include <QWindow>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Peer.h"
#include "chat/window/frmHelp.h"

namespace {

constexpr const char* kHint = "Gib hier deine Frage ein.";

// The window, and the server that it talks to.
class Chat {
 public:
  Chat() {
    Show();
    EXPECT_TRUE(Until([&] { return peer.Received().find("NICK ") != std::string::npos; }));
  }

  void Show() {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  template <typename Widget>
  Widget* Find(const char* name) {
    return window.findChild<Widget*>(name);
  }
  QPlainTextEdit* Input() { return Find<QPlainTextEdit>("txtNachricht"); }
  QString Messages() { return Find<QPlainTextEdit>("txtMessages")->toPlainText(); }
  void Enter() { QTest::keyClick(Input(), Qt::Key_Return); }
  void Type(const QString& text) {
    for (const QChar letter : text) {
      QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, {}, letter);
      QApplication::sendEvent(Input(), &press);
    }
  }
  // Whether the next thing that the client sends is a message of that text.
  void ExpectSaid(const std::string& text) {
    const std::string line = "PRIVMSG #mod-community :" + text + "\r\n";
    EXPECT_EQ(peer.Received(line.size()), line);
    peer.Forget();
  }
  // What the server's line makes of the box; "|" stands for its line breaks.
  std::string ShownAfter(const std::string& line) {
    const QString before = Messages();
    peer.Send(line + "\r\nPING :done\r\n");
    EXPECT_TRUE(Until([&] { return peer.Received().ends_with("PONG :done\r\n"); }));
    peer.Forget();
    return Messages().mid(before.size()).replace('\n', '|').toStdString();
  }

  Listener listener;
  frmHelp window{{"127.0.0.1", std::to_string(listener.Port())}};
  Peer peer = listener.Take();
};

}  // namespace

TEST(frmHelp, LaysOutItsControls) {
  Chat chat;
  EXPECT_EQ(chat.window.size(), QSize(503, 375));
  EXPECT_EQ(chat.window.windowTitle(), "moddock // mod-pack Hilfe");
  EXPECT_EQ(chat.Find<QWidget>("txtMessages")->geometry(), QRect(8, 62, 487, 277));
  EXPECT_EQ(chat.Input()->geometry(), QRect(8, 346, 369, 17));
  EXPECT_EQ(chat.Find<QWidget>("cmdSend")->geometry(), QRect(384, 346, 47, 17));
  EXPECT_EQ(chat.Find<QWidget>("cmdClose")->geometry(), QRect(438, 346, 57, 17));
  EXPECT_TRUE(chat.Input()->hasFocus());
  EXPECT_TRUE(chat.window.windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_LE(chat.Input()->fontMetrics().height(), chat.Input()->height()) << "a whole line of text";
}

TEST(frmHelp, RegistersUnderADrawnName) {
  qputenv("computername", "PC\r\nQUIT");
  Chat chat;
  qunsetenv("computername");
  static const QRegularExpression kGreeting(
      "^USER (KELVO_USER\\d\\d)@help\\.kelvo \"127\\.0\\.0\\.1\" \"[^\"]+\" :PCQUIT\r\n"
      "NICK \\1\r\n$");
  EXPECT_TRUE(kGreeting.match(QString::fromStdString(chat.peer.Received())).hasMatch())
      << chat.peer.Received();
  chat.peer.Forget();
  chat.peer.Send(":s 433 * x :in use\r\n:s 376 x :End\r\n");
  ASSERT_TRUE(Until([&] { return chat.peer.Received().ends_with("JOIN #mod-community\r\n"); }));
  EXPECT_THAT(chat.peer.Received(), testing::Not(testing::HasSubstr("NICK")));
}

TEST(frmHelp, ShowsWhatTheServerBrings) {
  Chat chat;
  EXPECT_EQ(chat.Messages(), "KVPK Chat\n\n-->\t\t:Verbindung mit dem Chat hergestellt!");
  chat.peer.Send(":s 433 * x :used\r\n:x!y@z NICK none\r\n");  // any line before the own nick
  const std::string greeting = chat.peer.Received();
  chat.peer.Forget();
  const std::string me = greeting.substr(greeting.find("NICK ") + 5, 12);
  chat.ShownAfter(":s 001 x :Welcome");
  struct Row {
    std::string line, shown;
  };
  for (const Row& row : std::vector<Row>{
           {":bob!b@h PRIVMSG #mod-community :Hallo  \xDC\x80!", "|bob\t\t:Hallo  Ü€!"},
           {":bob!b@h PRIVMSG #Mod-Community :Hallo", ""},
           {":bob!b@h PRIVMSG someone :Hallo du", ""},
           {":bob!b@h NOTICE #mod-community :<b>x</b> &amp; http://a",
            "|bob\t\t:<b>x</b> &amp; http://a"},
           {":bob!b@h TOPIC #mod-community :Neues", "|bob\t\t:Neues"},
           {":bob!b@h PRIVMSG #mod-community :\1ACTION a\x02\x07\x1B[31mb\1",
            "|bob\t\t:\1ACTION a\x02\x07\x1B[31mb\1"},
           {":bob!b@h JOIN :#mod-community", "|-->\t\t:bob hat das Chat betreten!"},
           {":bob!b@h PART #mod-community :weg",
            "|bob\t\t:weg|-->\t\t:bob hat das Chat verlassen!"},
           {":bob!b@h QUIT :bye", "|-->\t\t:bob hat das Chat verlassen!"},
           {":bob!b@h NICK :rob", "|-->\t\t:bob hat sich in rob umbenannt!"},
           {":bob!b@h KICK #mod-community Tom :raus", "|bob\t\t:om :raus"},
           {":bob!b@h MODE #mod-community +m", "|bob\t\t:m"},
           {":s 474 x #mod-community :banned", "|-->\t\t:Du wurdest aus dem Chat ausgesperrt!"},
           {":bob MODE #other +b *!*@*", "|-->\t\t:Du wurdest aus dem Chat ausgesperrt!"},
           {":bob MODE #other -b *!*@*", "|-->\t\t:Du darfst das Chat wieder betreten!"},
           {":s 471 x #mod-community :full", ""},
       }) {
    EXPECT_EQ(chat.ShownAfter(row.line), row.shown) << row.line;
  }
  chat.peer.Close();
  EXPECT_TRUE(
      Until([&] { return chat.Messages().endsWith("\n-->\t\t:Die Verbindung wurde getrennt!"); }));
}

TEST(frmHelp, HandlesEnterAndTheHint) {
  Chat chat;
  chat.peer.Forget();
  const QString before = chat.Messages();
  EXPECT_EQ(chat.Input()->toPlainText(), kHint);
  QTest::keyClick(chat.Input(), Qt::Key_Left);
  QTest::keyClick(chat.Input(), Qt::Key_Delete);
  QTest::keyClick(chat.Input(), Qt::Key_Shift);
  EXPECT_EQ(chat.Input()->toPlainText(), kHint) << "keys without a character do nothing";
  chat.Enter();
  EXPECT_EQ(chat.Input()->toPlainText(), "\n") << "the hint goes after the send has stopped";
  chat.Enter();
  EXPECT_EQ(chat.Input()->toPlainText(), "\n") << "line breaks don't pile up";
  chat.Type("  ");
  chat.Enter();
  EXPECT_EQ(chat.Messages(), before) << "blanks alone send nothing";
  EXPECT_EQ(chat.peer.Received(), "");

  chat.Type("H\u00E4 \u20AC \u4E2D?");
  chat.Enter();
  EXPECT_EQ(chat.Input()->toPlainText(), "\n");
  chat.ExpectSaid("  H\xE4 \x80 ??");
  EXPECT_EQ(chat.Messages(), before + "\n\t\t:  Hä € ??");
  chat.Input()->insertPlainText("/quit\nnow");
  QTest::mouseClick(chat.Find<QWidget>("cmdSend"), Qt::LeftButton);
  chat.ExpectSaid("/quitnow");
  EXPECT_EQ(chat.Input()->toPlainText(), "");
}

TEST(frmHelp, DropsTheHintAtThePressOfAMouse) {
  Chat chat;
  QTest::mouseClick(chat.Input()->viewport(), Qt::LeftButton);
  EXPECT_EQ(chat.Input()->toPlainText(), "");
  chat.Type("text");
  QTest::mouseClick(chat.Input()->viewport(), Qt::LeftButton);
  EXPECT_EQ(chat.Input()->toPlainText(), "text");
}

TEST(frmHelp, KeepsTheTextThatItCouldntSend) {
  Chat chat;
  chat.peer.Close();
  ASSERT_TRUE(Until([&] { return chat.Messages().endsWith("getrennt!"); }));
  const QString before = chat.Messages();
  chat.Type("x");
  chat.Enter();
  EXPECT_EQ(chat.Input()->toPlainText(), "x\n");
  EXPECT_EQ(chat.Messages(), before);
  QTest::mouseClick(chat.Find<QWidget>("cmdClose"), Qt::LeftButton);
  EXPECT_FALSE(chat.window.isVisible()) << "it closes whether or not it could say so";

  const FullListener busy;
  frmHelp connecting({"127.0.0.1", std::to_string(busy.Port())});
  auto* const box = connecting.findChild<QPlainTextEdit*>("txtNachricht");
  QTest::keyClicks(box, "x");
  QTest::mouseClick(connecting.findChild<QWidget*>("cmdSend"), Qt::LeftButton);
  EXPECT_EQ(box->toPlainText(), "x") << "it isn't said before the connection stands";
}

TEST(frmHelp, LeavesTheChannelWhenItCloses) {
  const Listener listener;
  auto window =
      std::make_unique<frmHelp>(frmHelp::Server{"127.0.0.1", std::to_string(listener.Port())});
  Peer peer = listener.Take();
  window->show();
  ASSERT_TRUE(Until([&] { return peer.Received().find("NICK ") != std::string::npos; }));
  peer.Forget();
  QTest::mouseClick(window->findChild<QWidget*>("cmdClose"), Qt::LeftButton);
  window.reset();
  EXPECT_EQ(peer.ReceivedInAll(), "PART #mod-community\r\n");
}

TEST(frmHelp, IsOneWindowThatOutlivesItsOwner) {
  auto owner = std::make_unique<QWidget>();
  owner->show();
  const QPointer<frmHelp> chat = frmHelp::Open(owner.get());
  EXPECT_EQ(frmHelp::Open(owner.get()), chat);
  EXPECT_EQ(chat->windowHandle()->transientParent(), owner->windowHandle());
  owner->close();
  EXPECT_EQ(chat->windowHandle()->transientParent(), nullptr);
  owner.reset();
  Settle();
  ASSERT_TRUE(chat);
  EXPECT_TRUE(chat->isVisible());
  chat->close();
  Settle();
  EXPECT_FALSE(chat) << "a closed window is gone, and the next one starts over";
}

TEST(frmHelp, MovesByItsHeader) {
  Chat chat;
  chat.window.move(100, 100);
  QTest::mousePress(&chat.window, Qt::LeftButton, {}, {200, 53});
  QTest::mouseMove(&chat.window, {230, 80});
  EXPECT_NE(chat.window.cursor().shape(), Qt::SizeAllCursor) << "below the header";
  QTest::mouseRelease(&chat.window, Qt::LeftButton, {}, {230, 80});
  QTest::mousePress(&chat.window, Qt::LeftButton, {}, {200, 52});
  EXPECT_EQ(chat.window.cursor().shape(), Qt::SizeAllCursor);
  QTest::mouseRelease(&chat.window, Qt::LeftButton, {}, {200, 52});
  EXPECT_EQ(chat.window.cursor().shape(), Qt::ArrowCursor);
}
