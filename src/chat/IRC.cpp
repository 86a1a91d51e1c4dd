#include "chat/IRC.h"

#include <QDeadlineTimer>
#include <chrono>
#include <variant>

#include "core/basDebugLog.h"
#include "platform/Text.h"

using namespace std::chrono_literals;

namespace {

// How long lines are processed until the event loop has its turn.
constexpr std::chrono::milliseconds kLongestTurn = 50ms;
// In bytes. What a server of today may send, tags included, has half of it; what is longer is cut.
constexpr std::size_t kLongestLine = 16384;

}  // namespace

IRC::IRC(IRCEvents& events) : IrcParser(events), ws_(*this) {
  trReconnect_.setInterval(30s);
  QObject::connect(&trReconnect_, &QTimer::timeout, &trReconnect_, [this] { trReconnect_Timer(); });
  nextTurn_.setSingleShot(true);
  QObject::connect(&nextTurn_, &QTimer::timeout, &nextTurn_, [this] { ProcessWaiting(); });
}

void IRC::DoClose() {
  trReconnect_.stop();
  ws_.CloseSocket();
  ForgetChannels();
}

void IRC::DoConnect() {
  trReconnect_.stop();
  AskForHost();
  ws_.CloseSocket();
  ForgetChannels();
  ConnectToServer();
}

void IRC::ConnectToServer() {
  if (nextTurn_.isActive()) waiting_.clear();  // of a connection that is gone
  nextTurn_.stop();
  ws_.Connect(ServerHost_, Text::WholeNumber(ServerPort_));
}

// One attempt. If it can't even start, the timer runs on to the next.
void IRC::trReconnect_Timer() {
  Trapped("IRC.trReconnect_Timer", [this] {
    ws_.CloseSocket();
    ConnectToServer();
    trReconnect_.stop();
  });
}

void IRC::SendLine(const std::string& line) {
  ws_.SendData(line + "\r\n");
}

void IRC::SendData(const std::string& Data) {
  Trapped("IRC.SendData", [&] {
    if (ws_.State() == StateConnected) SendLine(Data);
  });
}

void IRC::Say(const std::string& Channel, const std::string& Message) {
  SendLine("PRIVMSG " + Channel + " :" + Message);
}

void IRC::Notice(const std::string& Channel, const std::string& Message) {
  SendLine("NOTICE " + Channel + " :" + Message);
}

void IRC::MeSay(const std::string& Channel, const std::string& Message) {
  SendLine("PRIVMSG " + Channel + " :\x01" + "ACTION " + Message + "\x01");
}

void IRC::SayAll(const std::string& Message) {
  ToAll(&IRC::Say, "IRC.SayAll", Message);
}

void IRC::NoticeAll(const std::string& Message) {
  ToAll(&IRC::Notice, "IRC.NoticeAll", Message);
}

void IRC::MeAll(const std::string& Message) {
  ToAll(&IRC::MeSay, "IRC.MeAll", Message);
}

void IRC::ToAll(Command command, std::string_view source, const std::string& Message) {
  const std::vector<std::string> channels = Channels();
  for (const std::string& channel : channels) {
    Trapped(source, [&] { (this->*command)(channel, Message); });
  }
}

void IRC::Join(const std::string& Channel) {
  SendLine("JOIN " + Channel);
}

void IRC::Part(const std::string& Channel) {
  SendLine("PART " + Channel);
}

// Registration. Where other clients put two words, address and name of this machine's end of the
// connection stand in quotes; servers read past both.
void IRC::OnConnect() {
  ForgetHosts();
  SendLine("USER " + Ident() + " \"" + ws_.LocalIP() + "\" \"" + ws_.LocalHostName() +
           "\" :" + Info_);
  SendLine("NICK " + NickName());
  Events().OnConnect();
}

void IRC::OnDataArrival(std::int32_t /*bytesTotal*/) {
  SocketValue received;
  ws_.GetData(received);
  const auto* const text = std::get_if<std::string>(&received);
  if (text == nullptr) return;
  for (std::string& line : CutLines(*text)) {
    waiting_.push_back(line.size() > kLongestLine ? line.substr(0, kLongestLine) : std::move(line));
  }
  ProcessWaiting();
}

void IRC::ProcessWaiting() {
  const QDeadlineTimer turn(kLongestTurn);
  while (!waiting_.empty()) {
    if (turn.hasExpired()) {
      ws_.HoldStream();
      return nextTurn_.start(0ms);
    }
    const std::string line = std::move(waiting_.front());
    waiting_.pop_front();
    ProcessLine(line);
  }
  ws_.ReleaseStream();
}

void IRC::OnClose() {
  Trapped("IRC.ws_OnClose", [this] { ws_.CloseSocket(); });
  Trapped("IRC.ws_OnClose", [this] { Events().OnClose(); });
  AfterLoss();
}

void IRC::OnError(std::int16_t Number, const std::string& Description, std::int32_t sCode,
                  const std::string& Source, const std::string& HelpFile, std::int32_t HelpContext,
                  bool CancelDisplay) {
  Trapped("IRC.ws_OnError", [this] { ws_.CloseSocket(); });
  Trapped("IRC.ws_OnError", [&] {
    Events().OnError(Number, Description, sCode, Source, HelpFile, HelpContext, CancelDisplay);
  });
  AfterLoss();
}

void IRC::AfterLoss() {
  ForgetChannels();
  if (ReconnectAfterDisconnect_ == 1) trReconnect_.start();
}
