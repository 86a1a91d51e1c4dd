#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IrcRecorder.h"
#include "Peer.h"
#include "chat/IRC.h"
#include "chat/SocketError.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Chat {
  explicit Chat(std::uint16_t port) {
    recorder.notesData = true;
    irc.SetServerHost("127.0.0.1");
    irc.SetServerPort(std::to_string(port));
    irc.SetNickName("nick");
    irc.SetIdent("ident@somewhere");
    irc.SetInfo("B\xFCro");
  }
  [[nodiscard]] bool Hears(std::size_t events) const {
    return Until([&] { return recorder.log.size() >= events; });
  }
  IrcRecorder recorder;
  IRC irc{recorder};
};

// A client that has sent its registration to the server at the other end.
struct Server {
  Server() { greeting = SentUntil("NICK nick"); }
  // What the client sends until a line of that text.
  std::string SentUntil(const std::string& end) {
    EXPECT_TRUE(Until([&] { return peer.Received().ends_with(end + "\r\n"); }));
    std::string received = peer.Received();
    peer.Forget();
    return received;
  }

  Listener listener;
  Chat chat{listener.Port()};
  Peer peer = (chat.irc.DoConnect(), listener.Take());
  std::string greeting;
};

}  // namespace

TEST(IRC, SendsNothingWithoutASocket) {
  Chat chat(1);
  chat.irc.SendData("quietly");
  chat.irc.SayAll("to nobody");
  EXPECT_THAT([&] { chat.irc.Say("#c", "x"); },
              testing::Throws<SocketError>(testing::Property(&SocketError::Number, 40006)));
}

TEST(IRC, RegistersAndSendsItsCommands) {
  Server server;
  IRC& irc = server.chat.irc;
  EXPECT_EQ(server.greeting, "USER ident@somewhere \"127.0.0.1\" \"" + irc.LocalHostName() +
                                 "\" :B\xFCro\r\nNICK nick\r\n");
  EXPECT_THAT(server.chat.recorder.Take(), ElementsAre("OnConnect()"));
  EXPECT_EQ(irc.State(), 7);

  irc.SetNickName("other");
  irc.Join("#c");
  irc.Say("#c", "Gr\xFC\xDF Gott");
  irc.Notice("#c", "note");
  irc.MeSay("#c", "waves");
  irc.Part("#c");
  irc.SendData("RAW");
  EXPECT_EQ(server.SentUntil("RAW"),
            "JOIN #c\r\nPRIVMSG #c :Gr\xFC\xDF Gott\r\nNOTICE #c :note\r\n"
            "PRIVMSG #c :\1ACTION waves\1\r\nPART #c\r\nRAW\r\n");

  irc.SetNickName("nick");
  server.peer.Send(":nick!i@h JOIN #a\r\n:nick!i@h JOIN #b\r\n");
  ASSERT_TRUE(server.chat.Hears(2));
  irc.SayAll("1");
  irc.NoticeAll("2");
  irc.MeAll("3");
  EXPECT_EQ(server.SentUntil("PRIVMSG #b :\1ACTION 3\1"),
            "PRIVMSG #a :1\r\nPRIVMSG #b :1\r\nNOTICE #a :2\r\nNOTICE #b :2\r\n"
            "PRIVMSG #a :\1ACTION 3\1\r\nPRIVMSG #b :\1ACTION 3\1\r\n");
}

TEST(IRC, TakesALineCutByAReadForTwo) {
  Server server;
  server.chat.recorder.Take();
  server.peer.Send(":a!b@c PRIVMSG #c :one t");
  ASSERT_TRUE(server.chat.Hears(1));
  server.peer.Send("wo three four five\r\n\r\n");
  ASSERT_TRUE(server.chat.Hears(2));
  EXPECT_THAT(server.chat.recorder.log,
              ElementsAre("OnDataArrival(:a!b@c PRIVMSG #c :one t|5|#c|one t)",
                          "OnDataArrival(wo three four five|4|four|ive)"));
}

TEST(IRC, ClosesAndForgetsItsChannels) {
  Server server;
  server.peer.Send(":nick!i@h JOIN #a\r\n");
  ASSERT_TRUE(Until([&] { return !server.chat.irc.Channels().empty(); }));
  server.chat.recorder.Take();
  server.peer.Close();
  ASSERT_TRUE(server.chat.Hears(1));
  EXPECT_THAT(server.chat.recorder.log, ElementsAre("OnClose()"));
  EXPECT_THAT(server.chat.irc.Channels(), IsEmpty());
  EXPECT_EQ(server.chat.irc.State(), 0);
  EXPECT_FALSE(server.chat.irc.Reconnect().isActive());
  Server other;
  other.chat.irc.DoClose();
  EXPECT_EQ(other.peer.ReceivedInAll(), "") << "no QUIT";
}

TEST(IRC, ComesBackOnlyWhenAsked) {
  for (const int value : {0, 1, 2}) {
    Chat chat(FreePort());
    chat.irc.SetReconnectAfterDisconnect(value);
    chat.irc.DoConnect();
    ASSERT_TRUE(chat.Hears(1));
    EXPECT_THAT(chat.recorder.log, ElementsAre("OnError(10061|Connection refused.|)"));
    EXPECT_EQ(chat.irc.Reconnect().isActive(), value == 1) << value;
    EXPECT_EQ(chat.irc.Reconnect().interval(), 30000);
    chat.irc.DoClose();
    EXPECT_FALSE(chat.irc.Reconnect().isActive());
  }
}

TEST(IRC, SurvivesALineWithoutAnEnd) {
  Server server;
  server.peer.Send(":a!b@c PRIVMSG #c :" + std::string(1'000'000, 'x') + " " +
                   std::string(1'000'000, ' ') + "+" + std::string(1'000'000, 'b'));
  server.peer.Send("\r\nPING :alive\r\n");
  server.SentUntil("PONG :alive");
}
