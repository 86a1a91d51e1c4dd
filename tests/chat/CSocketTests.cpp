#include <algorithm>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Peer.h"
#include "chat/CSocket.h"
#include "chat/MSocketSupport.h"
#include "chat/SocketError.h"
#include "core/basDebugLog.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using namespace std::string_literals;

constexpr const char* kHere = "127.0.0.1";
constexpr std::size_t kMuch = 16'000'000;  // bytes, more than the network takes at once

// A socket and what it told.
class Ear : public CSocketEvents {
 public:
  explicit Ear(SocketProtocol protocol = kTcpProtocol) { socket.SetProtocol(protocol); }

  std::vector<std::string> log;
  std::string heard;
  bool takesData = true;
  std::vector<std::int32_t> requests;
  std::int32_t lastProgress = -1;
  CSocket socket{*this};

  [[nodiscard]] bool Hears(const std::string& event) const {
    return Until([&] { return std::find(log.begin(), log.end(), event) != log.end(); });
  }
  [[nodiscard]] bool Has(std::int32_t bytes) const {
    return Until([&] { return socket.BytesReceived() == bytes; });
  }

  void OnClose() override { log.emplace_back("OnClose"); }
  void OnConnect() override { log.emplace_back("OnConnect"); }
  void OnConnectionRequest(std::int32_t requestID) override {
    log.emplace_back("OnConnectionRequest");
    requests.push_back(requestID);
  }
  void OnDataArrival(std::int32_t bytesTotal) override {
    log.push_back("OnDataArrival " + std::to_string(bytesTotal));
    if (!takesData) return;
    SocketValue value;
    socket.GetData(value);
    heard += std::get<std::string>(value);
  }
  void OnError(std::int16_t Number, const std::string& Description, std::int32_t sCode,
               const std::string& Source, const std::string& HelpFile, std::int32_t HelpContext,
               bool CancelDisplay) override {
    EXPECT_TRUE(sCode == 0 && HelpFile.empty() && HelpContext == 0 && !CancelDisplay);
    log.push_back("OnError " + std::to_string(Number) + " " + Description + Source);
  }
  void OnSendComplete() override { log.emplace_back("OnSendComplete"); }
  void OnSendProgress(std::int32_t bytesSent, std::int32_t bytesRemaining) override {
    lastProgress = bytesRemaining;
    log.push_back("OnSendProgress " + std::to_string(bytesSent) + " " +
                  std::to_string(bytesRemaining));
  }
};

// A connected socket and the peer at its other end.
struct Pair {
  Pair() {
    ear.socket.Connect(kHere, listener.Port());
    EXPECT_TRUE(ear.Hears("OnConnect"));
    peer = std::make_unique<Peer>(listener.Take());
    ear.log.clear();
  }
  Listener listener;
  Ear ear;
  CSocket& socket = ear.socket;
  std::unique_ptr<Peer> peer;
};

template <typename Call>
std::string ErrorOf(Call call) {
  try {
    call();
  } catch (const SocketError& error) {
    return std::to_string(error.Number()) + " " + error.Source() + ": " + error.Description();
  }
  return "";
}

}  // namespace

TEST(CSocket, RaisesWhatACallCantDo) {
  const Listener taken;
  const FullListener full;
  Ear idle;
  Ear second;
  const auto send = [&] { idle.socket.SendData("x"s); };
  EXPECT_EQ(ErrorOf(send),
            "40006 CSocket.SendData: Wrong protocol or connection state for the requested "
            "transaction or request.");
  EXPECT_EQ(ErrorOf([&] { second.socket.Connect(); }),
            "10049 CSocket.Connect: Cannot assign requested address.");
  EXPECT_EQ(ErrorOf([&] { idle.socket.Connect(kHere, 65536); }), "6 CSocket.Connect: Overflow.");
  EXPECT_EQ(ErrorOf(send), "10057 CSocket.SendData: Socket is not connected.");
  EXPECT_EQ(ErrorOf([&] { idle.socket.Bind(0, "nowhere"); }),
            "10049 CSocket.Bind: Cannot assign requested address.");
  EXPECT_EQ(ErrorOf([&] { second.socket.Bind(taken.Port(), kHere); }),
            "10048 CSocket.Bind: Address already in use.");
  EXPECT_EQ(ErrorOf([&] { second.socket.Listen(); }),
            "10048 CSocket.Listen: Address already in use.");
  EXPECT_EQ(second.socket.State(), StateError);
  EXPECT_EQ(ErrorOf([&] { second.socket.Accept(second.socket.SocketHandle()); }),
            "10057 CSocket.Accept: Socket is not connected.");
  idle.socket.Connect(kHere, full.Port());
  Settle();
  EXPECT_EQ(idle.socket.State(), StateConnecting);
  EXPECT_EQ(ErrorOf(send), "10057 CSocket.SendData: Socket is not connected.");
  EXPECT_THAT(idle.log, IsEmpty());
  EXPECT_EQ(MSocketSupport::GetErrorDescription(6), "Unknown error.");
}

TEST(CSocket, ReportsARefusal) {
  Ear ear;
  ear.socket.Connect(kHere, FreePort());
  ASSERT_TRUE(ear.Hears("OnError 10061 Connection refused."));
  EXPECT_EQ(ear.log.size(), 1U);
  EXPECT_EQ(ear.socket.State(), StateError);
  EXPECT_EQ(ear.socket.SocketHandle(), -1);
  const Listener listener;
  ear.socket.Connect({}, listener.Port());
  EXPECT_EQ(ear.log.size(), 1U) << "it never tells within the call";
  EXPECT_TRUE(ear.Hears("OnConnect")) << "a new socket serves the next attempt";
  EXPECT_THAT(ErrorOf([&] { ear.socket.Connect(kHere); }), testing::StartsWith("10056 "));
}

TEST(CSocket, DeliversWhatCameBeforeTheEnd) {
  Pair pair;
  pair.peer->Send("last words");
  pair.peer->ShutDownSending();
  ASSERT_TRUE(pair.ear.Hears("OnClose"));
  EXPECT_THAT(pair.ear.log, ElementsAre("OnDataArrival 10", "OnClose"));
  EXPECT_EQ(pair.ear.heard, "last words");
  EXPECT_EQ(pair.socket.State(), StateClosed);
  EXPECT_EQ(pair.socket.SocketHandle(), -1);
  EXPECT_EQ(pair.peer->ReceivedInAll(), "");

  // The service may tell of the end before all has been read.
  Pair early;
  early.ear.takesData = false;
  early.peer->Send("0123456789");
  ASSERT_TRUE(Until([&] { return Sockets::Peek(early.socket.SocketHandle()).value == 1; }));
  early.socket.PostSocketEvent(32, 0);
  EXPECT_THAT(early.ear.log, Contains("OnDataArrival 10"));
  EXPECT_EQ(early.ear.log.back(), "OnClose") << "would-block ends the reading, silently";
  EXPECT_EQ(early.socket.BytesReceived(), 0);
}

TEST(CSocket, ReportsAReset) {
  for (const char* const lastWords : {"", "last words"}) {
    Pair pair;
    pair.socket.SendData("never read"s);
    ASSERT_TRUE(pair.ear.Hears("OnSendComplete"));
    pair.peer->Send(lastWords);
    pair.peer->Close();
    ASSERT_TRUE(pair.ear.Hears("OnError 10054 Connection reset by peer.")) << lastWords;
    EXPECT_THAT(pair.ear.log, Not(Contains("OnClose")));
    EXPECT_EQ(pair.ear.heard, lastWords);
    EXPECT_EQ(pair.socket.State(), StateError);
  }
}

TEST(CSocket, TellsOfASendsEndOutOfThePostedEvent) {
  Pair pair;
  pair.socket.SendData("abc"s);
  EXPECT_THAT(pair.ear.log, ElementsAre("OnSendProgress 3 0"));
  EXPECT_EQ(pair.peer->Received(3), "abc");
  ASSERT_TRUE(pair.ear.Hears("OnSendComplete"));
  Settle();
  EXPECT_THAT(pair.ear.log, ElementsAre("OnSendProgress 3 0", "OnSendComplete"));

  // More than the network takes at once.
  Pair large;
  std::string much(kMuch, 'x');
  for (std::size_t i = 0; i < kMuch; i += 997) much[i] = static_cast<char>(i % 251);
  large.socket.SendData(much);
  EXPECT_GT(large.ear.lastProgress, 0);
  Settle();
  EXPECT_THAT(large.ear.log, Not(Contains("OnSendComplete")));
  EXPECT_TRUE(large.peer->Received(kMuch) == much);
  ASSERT_TRUE(large.ear.Hears("OnSendComplete"));
  EXPECT_EQ(large.ear.lastProgress, 0);
}

TEST(CSocket, ReplacesWhatStillWaits) {
  Pair pair;
  pair.socket.SendData(std::string(kMuch, 'x'));
  ASSERT_GT(pair.ear.lastProgress, 0);
  const std::size_t gone = kMuch - static_cast<std::size_t>(pair.ear.lastProgress);
  pair.socket.SendData("second"s);
  ASSERT_TRUE(Until([&] { return pair.peer->Received().ends_with("second"); }));
  EXPECT_EQ(pair.peer->Received(), std::string(gone, 'x') + "second");
  EXPECT_TRUE(pair.ear.Hears("OnSendComplete"));
}

TEST(CSocket, GivesItsBufferInParts) {
  Pair pair;
  pair.ear.takesData = false;
  pair.peer->Send("abcdef");
  ASSERT_TRUE(pair.ear.Has(6));
  SocketValue value;
  pair.socket.PeekData(value, {}, 2);
  EXPECT_EQ(value, SocketValue("ab"s));
  pair.socket.GetData(value, {}, 2);
  EXPECT_EQ(value, SocketValue("ab"s));
  pair.peer->Send("gh");
  ASSERT_TRUE(pair.ear.Has(6));
  EXPECT_THAT(pair.ear.log, ElementsAre("OnDataArrival 6", "OnDataArrival 6")) << "the whole";
  pair.socket.GetData(value, kInteger16Value, 2);
  EXPECT_EQ(value, SocketValue(std::int16_t{0x6463}));
  pair.socket.GetData(value, kByteArrayValue, 4);
  const SocketValue bytes(std::vector<std::uint8_t>{'e', 'f', 'g', 'h'});
  EXPECT_EQ(value, bytes);
  pair.socket.GetData(value, kTextValue, 4);
  EXPECT_EQ(value, bytes) << "empty: left as it is";
  pair.peer->Send("xyz");
  ASSERT_TRUE(pair.ear.Has(3));
  pair.socket.GetData(value, {}, 4);
  EXPECT_EQ(value, SocketValue("xyz"s));
}

TEST(SocketValue, HasBytesLowestFirstBothWays) {
  struct Row {
    SocketValue value;
    int type;
    std::string bytes;
  };
  for (const Row& row : std::vector<Row>{
           {std::uint8_t{0xFE}, kByteValue, "\xFE"},
           {std::int16_t{-2}, kInteger16Value, "\xFE\xFF"},
           {std::int32_t{0x01020304}, kInteger32Value, "\x04\x03\x02\x01"},
           {1.0F, kFloat32Value, "\0\0\x80\x3F"s},
           {1.0, kFloat64Value, "\0\0\0\0\0\0\xF0\x3F"s},
           {Currency{10000}, kCurrencyValue, "\x10\x27\0\0\0\0\0\0"s},
           {Date{1.0}, kDateValue, "\0\0\0\0\0\0\xF0\x3F"s},
           {true, kBooleanValue, "\xFF\xFF"},
           {false, kBooleanValue, "\0\0"s},
           {"\xE4\x81\0x"s, kTextValue, "\xE4\x81\0x"s},
       }) {
    EXPECT_EQ(BytesOf(row.value), row.bytes) << row.type;
    EXPECT_EQ(ValueOf(row.bytes + "more", row.type) == row.value, row.type != kTextValue);
    EXPECT_EQ(ValueOf(row.bytes, row.type), row.value) << row.type;
  }
  EXPECT_EQ(BytesOf({}), "");
  EXPECT_EQ(ValueOf("\x01", kInteger32Value), SocketValue(std::int32_t{1}));
}

TEST(CSocket, LooksNamesUp) {
  const Listener listener;
  Ear ear;
  ear.socket.Connect("localhost", listener.Port());
  EXPECT_EQ(ear.socket.State(), StateResolvingHost);
  ASSERT_TRUE(ear.Hears("OnConnect"));
  EXPECT_EQ(ear.socket.RemoteHostIP(), kHere);

  Ear lost;
  lost.socket.Connect("no-such-host.invalid", 1);
  ASSERT_TRUE(Until([&] { return !lost.log.empty(); }));
  EXPECT_THAT(lost.log, ElementsAre(testing::MatchesRegex("OnError 1100[1-4] .*\\.")));
  EXPECT_EQ(lost.socket.State(), StateError);
  EXPECT_NE(lost.socket.SocketHandle(), -1) << "the socket itself stays";

  Ear refused;
  refused.socket.Connect("localhost", 65536);
  ASSERT_TRUE(Until([&] { return refused.socket.State() == StateHostResolved; }));
  Settle();
  EXPECT_THAT(refused.log, IsEmpty()) << "a failure out of an event has nowhere to go";
}

TEST(CSocket, IsNotTouchedOnceItIsGone) {
  auto ear = std::make_unique<Ear>();
  ear->socket.Connect("localhost", 1);
  ear.reset();
  Ear later;
  later.socket.Connect("localhost", FreePort());
  EXPECT_TRUE(Until([&] { return !later.log.empty(); }));

  // A handler that destroys the object, at each event that other steps follow.
  struct Doomed : CSocketEvents {
    std::unique_ptr<CSocket> socket = std::make_unique<CSocket>(*this);
    void OnDataArrival(std::int32_t /*bytesTotal*/) override { socket.reset(); }
    void OnSendProgress(std::int32_t /*sent*/, std::int32_t /*left*/) override { socket.reset(); }
  };
  for (const bool sends : {false, true}) {
    const Listener listener;
    Doomed doomed;
    doomed.socket->Connect(kHere, listener.Port());
    ASSERT_TRUE(Until([&] { return doomed.socket->State() == StateConnected; }));
    const Peer peer = listener.Take();
    if (sends) {
      doomed.socket->SendData("x"s);
    } else {
      peer.Send("x");
      ASSERT_TRUE(Until([&] {
        return !doomed.socket || Sockets::Peek(doomed.socket->SocketHandle()).value == 1;
      }));
      if (doomed.socket) doomed.socket->PostSocketEvent(32, 0);
    }
    EXPECT_EQ(doomed.socket, nullptr);
    Settle();
  }
}

TEST(CSocket, ClosesInEachState) {
  Ear ear;
  ear.socket.CloseSocket();
  ear.socket.Connect("localhost", FreePort());
  ear.socket.CloseSocket();
  EXPECT_EQ(ear.socket.State(), StateClosed);
  EXPECT_EQ(ear.socket.SocketHandle(), -1);
  // The look-up goes on and finds no socket to connect.
  EXPECT_TRUE(ear.Hears("OnError 10038 Socket operation on nonsocket.CSocket.PostGetHostEvent"));

  const Listener listener;
  Ear hasty;
  hasty.socket.Connect(kHere, listener.Port());
  hasty.socket.CloseSocket();
  EXPECT_EQ(hasty.socket.State(), StateClosed);
  Settle();
  EXPECT_THAT(hasty.log, IsEmpty());

  Pair pair;
  pair.socket.CloseSocket();
  EXPECT_EQ(pair.socket.State(), StateClosing);
  EXPECT_EQ(pair.peer->ReceivedInAll(), "");
  pair.peer->Send("still heard");
  EXPECT_TRUE(Until([&] { return pair.ear.heard == "still heard"; }));
  EXPECT_THAT(pair.ear.log, Not(Contains("OnClose")));
  pair.peer->Close();
  EXPECT_TRUE(pair.ear.Hears("OnClose"));

  Pair twice;
  twice.socket.CloseSocket();
  twice.socket.CloseSocket();
  EXPECT_EQ(twice.socket.State(), StateClosed);
  twice.peer->Close();
  Settle();
  EXPECT_THAT(twice.ear.log, IsEmpty());
}

TEST(CSocket, ListensAndAccepts) {
  const std::uint16_t port = FreePort();
  Ear server;
  server.socket.SetLocalPort(port);
  server.socket.Listen();
  EXPECT_EQ(server.socket.State(), StateListening);
  Ear client;
  client.socket.Connect(kHere, port);
  ASSERT_TRUE(client.Hears("OnConnect") && server.Hears("OnConnectionRequest"));
  Ear taken(kUdpProtocol);
  taken.socket.Accept(server.requests.at(0));
  EXPECT_EQ(taken.socket.State(), StateConnected);
  EXPECT_EQ(taken.socket.Protocol(), kTcpProtocol);
  EXPECT_EQ(taken.socket.LocalPort(), port);
  EXPECT_EQ(taken.socket.RemotePort(), client.socket.LocalPort());
  EXPECT_EQ(taken.socket.RemoteHost(), kHere);
  EXPECT_EQ(taken.socket.LocalHostName(), kHere);
  taken.socket.SendData("welcome"s);
  EXPECT_TRUE(Until([&] { return client.heard == "welcome"; }));
  client.socket.CloseSocket();
  EXPECT_TRUE(taken.Hears("OnClose") && client.Hears("OnClose"));
}

TEST(CSocket, WaitsWithConnectionsThatItCantTake) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers need handles for their own checks";
#endif
  const std::uint16_t port = FreePort();
  Ear server;
  server.socket.SetLocalPort(port);
  server.socket.Listen();
  const Peer client(Sockets::Open(Sockets::Kind::kStream).value);
  EXPECT_EQ(Sockets::Connect(client.Handle(), {kLoopback, port}), Sockets::kWouldBlock);
  int failures = 0;
  basDebugLog::SetRecorder([&](const auto& /*failure*/) { ++failures; });
  // The system gives the program no more handles.
  rlimit before{};
  EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const Peer last(Sockets::Open(Sockets::Kind::kStream).value);
  const rlimit none{static_cast<rlim_t>(last.Handle()), before.rlim_max};
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_TRUE(Until([&] { return failures > 0; }));
  Settle();
  EXPECT_LT(failures, 5) << "it tries at every turn of the event loop";
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_TRUE(server.Hears("OnConnectionRequest")) << "it never tries again";
  basDebugLog::SetRecorder({});
  for (const std::int32_t request : server.requests) Sockets::Close(request);
}

TEST(CSocket, SendsDatagrams) {
  const std::uint16_t port = FreePort();
  Ear receiver(kUdpProtocol);
  receiver.socket.Bind(port, kHere);
  Ear sender(kUdpProtocol);
  sender.socket.Connect("localhost", port);
  EXPECT_EQ(sender.socket.State(), StateResolvingHost);
  ASSERT_TRUE(sender.Hears("OnConnect"));
  sender.socket.SendData("one"s);
  sender.socket.SendData("two"s);
  ASSERT_TRUE(Until([&] { return receiver.heard == "onetwo"; }));
  EXPECT_THAT(receiver.log, ElementsAre("OnDataArrival 3", "OnDataArrival 3"));
  EXPECT_EQ(receiver.socket.RemotePort(), sender.socket.LocalPort());
  EXPECT_EQ(receiver.socket.RemoteHostIP(), kHere);

  // To a name: the datagram waits for the look-up.
  Ear late(kUdpProtocol);
  late.socket.SetRemoteHost("localhost");
  late.socket.SetRemotePort(port);
  late.socket.SendData("three"s);
  EXPECT_THAT(late.log, IsEmpty());
  ASSERT_TRUE(late.Hears("OnSendComplete"));
  EXPECT_TRUE(Until([&] { return receiver.heard == "onetwothree"; }));

  // Broadcasts go to addresses that end so. A name changes neither address nor option.
  late.socket.SetRemoteHost("127.255.255.255");
  EXPECT_EQ(ErrorOf([&] { late.socket.SendData("x"s); }), "");
  late.socket.SetRemoteHost(kHere);
  late.socket.SetRemoteHost("somewhere.255");
  EXPECT_EQ(late.socket.RemoteHostIP(), kHere);
}

TEST(MSocketSupport, StopsTheServiceWithTheLastSocket) {
  {
    const Pair pair;
    { const Ear idle; }
    EXPECT_TRUE(MSocketSupport::ServiceStarted()) << "a socket is registered";
  }
  EXPECT_FALSE(MSocketSupport::ServiceStarted());
  Ear first;
  { const Ear second; }
  EXPECT_FALSE(MSocketSupport::ServiceStarted());
  const Listener listener;
  first.socket.Connect(kHere, listener.Port());
  EXPECT_TRUE(first.Hears("OnConnect"));
}
