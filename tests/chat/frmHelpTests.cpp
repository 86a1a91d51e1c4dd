#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>
#include <QWindow>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Peer.h"
#include "chat/window/frmHelp.h"
#include "core/basDebugLog.h"

namespace {

// The window, and the server that it talks to.
class Chat {
 public:
  Chat() {
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_TRUE(Until([&] { return peer.Received().find("NICK ") != std::string::npos; }));
    greeting = peer.Received();
    peer.Forget();
  }

  template <typename Widget = QWidget>
  Widget* Find(const char* name) {
    return window->findChild<Widget*>(name);
  }
  QString Messages() {
    QCoreApplication::processEvents();
    return Find<QPlainTextEdit>("txtMessages")->toPlainText();
  }
  QString Typed() { return input->toPlainText(); }
  void Enter() { QTest::keyClick(input, Qt::Key_Return); }
  void Type(const QString& text) {
    for (const QChar letter : text) {
      QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, {}, letter);
      QApplication::sendEvent(input, &press);
    }
  }
  void Click(const char* button) { QTest::mouseClick(Find(button), Qt::LeftButton); }
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
  std::unique_ptr<frmHelp> window =
      std::make_unique<frmHelp>(frmHelp::Server{"127.0.0.1", std::to_string(listener.Port())});
  QPlainTextEdit* input = Find<QPlainTextEdit>("txtNachricht");
  Peer peer = listener.Take();
  std::string greeting;
};

}  // namespace

TEST(frmHelp, RegistersUnderADrawnName) {
  qputenv("computername", "PC\r\nQUIT");
  Chat chat;
  qunsetenv("computername");
  EXPECT_THAT(
      chat.greeting,
      testing::MatchesRegex(
          "USER KELVO_USER[0-9][0-9]@help\\.kelvo \"127\\.0\\.0\\.1\" \"[^\"]+\" :PCQUIT\r\n"
          "NICK KELVO_USER[0-9][0-9]\r\n"));
  EXPECT_EQ(chat.greeting.substr(5, 12), chat.greeting.substr(chat.greeting.find("NICK ") + 5, 12));
  chat.peer.Send(":s 433 * x :in use\r\n:s 376 x :End\r\n");
  ASSERT_TRUE(Until([&] { return chat.peer.Received().ends_with("JOIN #mod-community\r\n"); }));
  EXPECT_THAT(chat.peer.Received(), testing::Not(testing::HasSubstr("NICK")));
}

TEST(frmHelp, ShowsWhatTheServerBrings) {
  Chat chat;
  const std::string me = chat.greeting.substr(5, 12);
  EXPECT_EQ(chat.Messages(), "KVPK Chat\n\n-->\t\t:Verbindung mit dem Chat hergestellt!");
  for (const auto& [line, shown] : std::vector<std::pair<std::string, std::string>>{
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
           {":" + me + "!u@h JOIN #mod-community", ""},
           {":bob!b@h KICK #mod-community " + me + " :genug",
            "|bob\t\t:" + me.substr(1) +
                " :genug|-->\t\t:Du wurdest aus dem Chat rausgeschmissen!"},
       }) {
    EXPECT_EQ(chat.ShownAfter(line), shown) << line;
  }

  chat.peer.Close();
  EXPECT_TRUE(
      Until([&] { return chat.Messages().endsWith("\n-->\t\t:Die Verbindung wurde getrennt!"); }));
}

TEST(frmHelp, DoesntStandStillWhateverAServerSends) {
  const auto times = [](std::size_t count, const std::string& text) {
    return QByteArray(text.c_str()).repeated(static_cast<int>(count)).toStdString();
  };
  const std::string message =
      ":bob!b@h PRIVMSG #mod-community :" + std::string(130'000, 'x') + "\n";
  for (const std::string& flood :
       {times(300, ":ME JOIN #c\n") + times(9000, ":a KICK #d ME :x\n"), times(80, message),
        times(100'000, ":a JOIN c\n"), times(200'000, " 376\n")}) {
    Chat chat;
    qint64 longest = 0;
    QElapsedTimer clock;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout,
                     [&] { longest = std::max(longest, clock.restart()); });
    tick.start(1);
    clock.start();
    chat.peer.Send(":" + chat.greeting.substr(5, 12) + " NICK ME\n" + flood);
    chat.peer.ShutDownSending();
    EXPECT_TRUE(Until([&] { return chat.Messages().endsWith("getrennt!"); })) << "or out of order";
    EXPECT_LT(longest, 300) << flood.substr(0, 40);
    EXPECT_LE(chat.Messages().count('\n'), 5000);
  }
}

TEST(frmHelp, HandlesEnterAndTheHint) {
  Chat chat;
  EXPECT_TRUE(chat.input->hasFocus());
  const QString before = chat.Messages();
  for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Delete, Qt::Key_Shift}) {
    QTest::keyClick(chat.input, key);
    EXPECT_EQ(chat.Typed(), "Gib hier deine Frage ein.") << "keys without a character do nothing";
  }
  chat.Enter();
  EXPECT_EQ(chat.Typed(), "\n") << "the hint goes after the send has stopped";
  chat.Enter();
  EXPECT_EQ(chat.Typed(), "\n") << "line breaks don't pile up";
  chat.Type("  ");
  chat.Enter();
  EXPECT_EQ(chat.Messages(), before) << "blanks alone send nothing";
  EXPECT_EQ(chat.peer.Received(), "");

  chat.Type("H\u00E4 \u20AC \u4E2D?");
  chat.Enter();
  EXPECT_EQ(chat.Typed(), "\n");
  chat.ExpectSaid("  H\xE4 \x80 ??");
  EXPECT_EQ(chat.Messages(), before + "\n\t\t:  Hä € ??");
  chat.input->insertPlainText("/quit\nnow");
  chat.Click("cmdSend");
  chat.ExpectSaid("/quitnow");
  EXPECT_EQ(chat.Typed(), "");
  chat.Click("cmdClose");
  chat.window.reset();
  EXPECT_EQ(chat.peer.ReceivedInAll(), "PART #mod-community\r\n");
}

TEST(frmHelp, KeepsTheTextThatItCouldntSend) {
  Chat chat;
  chat.peer.Close();
  ASSERT_TRUE(Until([&] { return chat.Messages().endsWith("getrennt!"); }));
  const QString before = chat.Messages();
  chat.Type("x");
  chat.Enter();
  EXPECT_EQ(chat.Typed(), "x\n");
  EXPECT_EQ(chat.Messages(), before);
  QCoreApplication::processEvents();
  EXPECT_EQ(chat.input->verticalScrollBar()->value(), 0) << "it shows the empty line behind it";
  chat.Click("cmdClose");
  EXPECT_FALSE(chat.window->isVisible()) << "it closes whether or not it could say so";

  const FullListener busy;
  frmHelp connecting({"127.0.0.1", std::to_string(busy.Port())});
  auto* const box = connecting.findChild<QPlainTextEdit*>("txtNachricht");
  QTest::keyClicks(box, "x");
  QTest::mouseClick(connecting.findChild<QWidget*>("cmdSend"), Qt::LeftButton);
  EXPECT_EQ(box->toPlainText(), "x") << "it isn't said before the connection stands";

  std::string logged;
  basDebugLog::SetRecorder(
      [&](const basDebugLog::TrappedFailure& failure) { logged = failure.cause; });
  const frmHelp refused({"127.0.0.1", std::to_string(FreePort())});
  EXPECT_TRUE(Until([&] { return !logged.empty(); }));
  basDebugLog::SetRecorder({});
  EXPECT_EQ(logged, "error 10061: Connection refused.");
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
  const auto cursor = [&] { return chat.window->cursor().shape(); };
  QTest::mousePress(chat.window.get(), Qt::LeftButton, {}, {200, 53});
  EXPECT_EQ(cursor(), Qt::ArrowCursor) << "below the header";
  QTest::mouseRelease(chat.window.get(), Qt::LeftButton, {}, {200, 53});
  QTest::mousePress(chat.window.get(), Qt::LeftButton, {}, {200, 52});
  EXPECT_EQ(cursor(), Qt::SizeAllCursor);
  QTest::mouseRelease(chat.window.get(), Qt::LeftButton, {}, {200, 52});
  EXPECT_EQ(cursor(), Qt::ArrowCursor);
}
