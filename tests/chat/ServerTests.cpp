// The chat window and a real IRC server: ngircd, on a free port of this machine.

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Peer.h"
#include "chat/window/frmHelp.h"

namespace {

class IrcServer {
 public:
  IrcServer() {
    QFile file(folder_.filePath("ngircd.conf"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QString("[Global]\nName = irc.kelvo.test\nInfo = test\nListen = 127.0.0.1\n"
                       "Ports = %1\nMotdPhrase = Willkommen\n"
                       "[Limits]\nMaxNickLength = 20\nMaxConnectionsIP = 0\nMaxPenaltyTime = 0\n"
                       "[Options]\nDNS = no\nIdent = no\nPAM = no\n")
                   .arg(port_)
                   .toLatin1());
    file.close();
    const QString program = QStandardPaths::findExecutable("ngircd", {"/usr/sbin", "/usr/bin"});
    EXPECT_NE(program, "") << "the Debian package ngircd is missing";
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.start(program, {"-n", "-f", file.fileName()});
    EXPECT_TRUE(process_.waitForStarted());
    EXPECT_TRUE(Until([&] { return Connect().error == 0; })) << "it never listened";
  }
  ~IrcServer() { Stop(); }
  Q_DISABLE_COPY_MOVE(IrcServer)

  // A connection that stands; otherwise an error.
  [[nodiscard]] Sockets::Result Connect() const {
    const Sockets::Result made = Sockets::Open(Sockets::Kind::kStream);
    Sockets::Address peer;
    Sockets::Connect(made.value, {kLoopback, port_});
    Settle();
    if (Sockets::PeerAddress(made.value, peer) == 0) return made;
    Sockets::Close(made.value);
    return {-1, Sockets::kNotConnected};
  }
  [[nodiscard]] std::string Port() const { return std::to_string(port_); }
  void Stop() {
    process_.terminate();
    process_.waitForFinished();
  }

 private:
  QTemporaryDir folder_;
  std::uint16_t port_ = FreePort();
  QProcess process_;
};

// Somebody else in the channel.
class Guest {
 public:
  Guest(const IrcServer& server, const std::string& nick) : peer_(server.Connect().value) {
    Says("NICK " + nick + "\r\nUSER x 0 * :X\r\nJOIN #mod-community");
    Sees("JOIN :#mod-community");
  }

  void Says(const std::string& line) { peer_.Send(line + "\r\n"); }
  // Waits for a line that ends in `text`, and gives who it is from.
  std::string Sees(const std::string& text) {
    std::string nick;
    EXPECT_TRUE(Until([&] {
      const std::string all = peer_.Received();
      const std::size_t end = all.find(text + "\r\n", seen_);
      if (end == std::string::npos) return false;
      const std::size_t start = all.rfind('\n', end) + 2;  // behind the colon
      nick = all.substr(start, all.find('!', start) - start);
      seen_ = end + text.size();
      return true;
    })) << "never saw: "
        << text << "\nsaw: " << peer_.Received();
    return nick;
  }

 private:
  Peer peer_;
  std::size_t seen_ = 0;
};

}  // namespace

TEST(Server, LetsTheWindowTalk) {
  IrcServer server;
  Guest guest(server, "modder");
  frmHelp window({"127.0.0.1", server.Port()});
  window.show();
  const std::string me = guest.Sees("JOIN :#mod-community");
  ASSERT_THAT(me, testing::MatchesRegex("KELVO_USER[0-9][0-9]"));
  auto* const messages = window.findChild<QPlainTextEdit*>("txtMessages");
  auto* const input = window.findChild<QPlainTextEdit*>("txtNachricht");
  const auto shows = [&](const QString& end) {
    EXPECT_TRUE(Until([&] { return messages->toPlainText().endsWith(end); })) << end.toStdString();
  };
  guest.Says("PRIVMSG #mod-community :Gr\xFC\xDF Gott, was gibt's?");
  shows("gibt's?");
  QTest::mouseClick(input->viewport(), Qt::LeftButton);
  input->insertPlainText("Läuft die Mod auch ohne Patch?");
  QTest::keyClick(input, Qt::Key_Return);
  guest.Sees(" PRIVMSG #mod-community :L\xE4uft die Mod auch ohne Patch?");
  guest.Says("NICK helfer");
  shows("umbenannt!");
  guest.Says("NOTICE #mod-community :Nein.\r\nPRIVMSG " + me + " :unter uns");
  shows("Nein.");
  guest.Says("PART #mod-community :bis gleich\r\nJOIN #mod-community");
  shows("betreten!");
  guest.Says("QUIT :bis morgen");
  shows("helfer hat das Chat verlassen!");
  server.Stop();
  shows("getrennt!");
  EXPECT_EQ(messages->toPlainText().toStdString(),
            "KVPK Chat\n"
            "\n-->\t\t:Verbindung mit dem Chat hergestellt!"
            "\nmodder\t\t:Grüß Gott, was gibt's?"
            "\n\t\t:Läuft die Mod auch ohne Patch?"
            "\n-->\t\t:modder hat sich in helfer umbenannt!"
            "\nhelfer\t\t:Nein."
            "\nhelfer\t\t:bis gleich"
            "\n-->\t\t:helfer hat das Chat verlassen!"
            "\n-->\t\t:helfer hat das Chat betreten!"
            "\n-->\t\t:helfer hat das Chat verlassen!"
            "\n-->\t\t:Die Verbindung wurde getrennt!");
}
