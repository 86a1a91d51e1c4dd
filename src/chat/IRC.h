#pragma once

#include <QTimer>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "chat/CSocket.h"
#include "chat/IrcParser.h"

/// A small IRC client over one TCP connection: it registers with its server, answers the server's
/// keep-alive, raises `IRCEvents` and sends commands. Text is Windows-1252 bytes, here as on the
/// wire.
///
/// A command is one send of one line. Without a socket it fails with 40006. No QUIT is ever sent:
/// closing, and the end of the object, close the socket, nothing more.
///
/// However much a server sends at once, the event loop gets its turn: nothing is read while lines
/// of an earlier read still wait for theirs.
class IRC : public IrcParser, private CSocketEvents {
 public:
  /// `events` must outlive the object.
  explicit IRC(IRCEvents& events);

  /// Closes; a connected socket ends with the server's close.
  void DoClose();
  /// Starts a connection to `ServerHost`; registration follows by itself.
  void DoConnect();

  /// A `SocketState`.
  [[nodiscard]] std::int16_t State() const { return static_cast<std::int16_t>(ws_.State()); }
  [[nodiscard]] const std::string& LocalIP() const { return ws_.LocalIP(); }
  [[nodiscard]] std::int32_t LocalPort() const { return ws_.LocalPort(); }
  [[nodiscard]] const std::string& LocalHostName() const { return ws_.LocalHostName(); }
  [[nodiscard]] const std::string& RemoteHostIP() const { return ws_.RemoteHostIP(); }
  [[nodiscard]] std::int32_t RemotePort() const { return ws_.RemotePort(); }
  [[nodiscard]] const std::string& RemoteHost() const { return ws_.RemoteHost(); }

  /// 1 has a lost connection, and a failed attempt, followed by an attempt 30 seconds later; any
  /// other value doesn't.
  [[nodiscard]] std::int32_t ReconnectAfterDisconnect() const { return ReconnectAfterDisconnect_; }
  void SetReconnectAfterDisconnect(std::int32_t value) { ReconnectAfterDisconnect_ = value; }

  void SendData(const std::string& Data) override;
  // To every joined channel, past those to which sending fails.
  void SayAll(const std::string& Message);
  void NoticeAll(const std::string& Message);
  void MeAll(const std::string& Message);
  // To one target.
  void Say(const std::string& Channel, const std::string& Message);
  void Notice(const std::string& Channel, const std::string& Message);
  void MeSay(const std::string& Channel, const std::string& Message);
  void Join(const std::string& Channel);
  void Part(const std::string& Channel);

  [[nodiscard]] const std::string& Info() const { return Info_; }
  void SetInfo(std::string_view value) { Info_ = value; }
  [[nodiscard]] const std::string& ServerHost() const { return ServerHost_; }
  void SetServerHost(std::string_view value) { ServerHost_ = value; }
  /// In decimal.
  [[nodiscard]] const std::string& ServerPort() const { return ServerPort_; }
  void SetServerPort(std::string_view value) { ServerPort_ = value; }

  /// The timer of the next attempt.
  [[nodiscard]] const QTimer& Reconnect() const { return trReconnect_; }

 protected:
  void SendLine(const std::string& line) override;

 private:
  using Command = void (IRC::*)(const std::string& Channel, const std::string& Message);

  void OnConnect() override;
  void OnClose() override;
  void OnDataArrival(std::int32_t bytesTotal) override;
  void OnError(std::int16_t Number, const std::string& Description, std::int32_t sCode,
               const std::string& Source, const std::string& HelpFile, std::int32_t HelpContext,
               bool CancelDisplay) override;
  void ToAll(Command command, std::string_view source, const std::string& Message);
  void ConnectToServer();
  void ProcessWaiting();
  void AfterLoss();
  void trReconnect_Timer();

  CSocket ws_;
  QTimer trReconnect_;
  std::deque<std::string> waiting_;  // lines that have been read and not processed
  QTimer nextTurn_;                  // runs while they wait for the event loop's next turn
  std::string ServerHost_ = "localhost";
  std::string ServerPort_ = "6667";
  std::string Info_ = "Info";
  std::int32_t ReconnectAfterDisconnect_ = 0;
};
