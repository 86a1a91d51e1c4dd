#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "chat/SocketValue.h"
#include "platform/Sockets.h"

/// States of a socket. The values 1 and 3 are never taken.
enum SocketState : std::int32_t {
  StateClosed = 0,
  StateListening = 2,
  StateResolvingHost = 4,
  StateHostResolved = 5,
  StateConnecting = 6,
  StateConnected = 7,
  StateClosing = 8,  ///< the send direction is shut, or the peer has closed
  StateError = 9,    ///< a failure ended the connection
};

enum SocketProtocol : std::int32_t { kTcpProtocol = 0, kUdpProtocol = 1 };

/// Who hears a socket's events. They come out of the event loop, in the order in which the network
/// reported them, and a handler may call back into the socket or destroy it.
class CSocketEvents {
 public:
  CSocketEvents() = default;
  virtual ~CSocketEvents() = default;
  CSocketEvents(const CSocketEvents&) = delete;
  CSocketEvents& operator=(const CSocketEvents&) = delete;
  CSocketEvents(CSocketEvents&&) = delete;
  CSocketEvents& operator=(CSocketEvents&&) = delete;

  /// The connection has ended and the socket is gone; the state is `StateClosed`.
  virtual void OnClose() {}
  /// The connection stands; the local address is filled.
  virtual void OnConnect() {}
  /// A listening socket has taken a connection: a handle, which `Accept` of another object takes
  /// over.
  virtual void OnConnectionRequest(std::int32_t /*requestID*/) {}
  /// New bytes have come; so many wait now in all.
  virtual void OnDataArrival(std::int32_t /*bytesTotal*/) {}
  /// A failure that no call could report. `Source` is empty but for a failed connect after a
  /// look-up; the last four are 0, "", 0 and false.
  virtual void OnError(std::int16_t /*Number*/, const std::string& /*Description*/,
                       std::int32_t /*sCode*/, const std::string& /*Source*/,
                       const std::string& /*HelpFile*/, std::int32_t /*HelpContext*/,
                       bool /*CancelDisplay*/) {}
  /// The whole of a `SendData` has gone out.
  virtual void OnSendComplete() {}
  /// The network took bytes of a `SendData`.
  virtual void OnSendProgress(std::int32_t /*bytesSent*/, std::int32_t /*bytesRemaining*/) {}
};

/// One asynchronous TCP or UDP socket. Nothing in it blocks, but the look-up of an address's
/// name, a quarter of a second at most: an operation starts, and its outcome is an event. What a
/// call itself can't do it throws as a `SocketError` whose source is the operation's name, such as
/// "CSocket.Connect".
class CSocket {
 public:
  /// `events` must outlive the object.
  explicit CSocket(CSocketEvents& events);
  /// Closes a live socket at once, without an event.
  ~CSocket();
  CSocket(const CSocket&) = delete;
  CSocket& operator=(const CSocket&) = delete;
  CSocket(CSocket&&) = delete;
  CSocket& operator=(CSocket&&) = delete;

  /// Offers the bytes of a value to the network. They take the place of any that still wait.
  void SendData(const SocketValue& varData);
  /// As `GetData`, but leaves the bytes where they are.
  void PeekData(SocketValue& varData, std::optional<int> varType = {},
                std::optional<std::int32_t> maxLen = {});
  /// Binds if need be, and listens.
  void Listen();
  /// Takes the first `maxLen` received bytes, or all without it or if there are fewer, as a value
  /// of a `SocketValueType`, text by default. Without any it leaves `varData` as it is.
  void GetData(SocketValue& varData, std::optional<int> varType = {},
               std::optional<std::int32_t> maxLen = {});
  /// Starts a connection to a host name or dotted address. What is left out or empty keeps its
  /// former value.
  void Connect(std::string_view strRemoteHost = {}, std::optional<std::int32_t> lngRemotePort = {});
  /// Closes: a connected socket for sending only, and the peer's close then ends it.
  void CloseSocket();
  /// Binds to a local port, 0 for any, and a dotted address, empty for all.
  void Bind(std::int32_t lngLocalPort = 0, std::string_view strLocalIP = {});
  /// Takes over the connection of an `OnConnectionRequest`.
  void Accept(std::int32_t requestID);

  [[nodiscard]] SocketState State() const { return state_; }
  [[nodiscard]] std::int32_t SocketHandle() const { return SocketHandle_; }
  [[nodiscard]] const std::string& RemoteHostIP() const { return RemoteHostIP_; }
  [[nodiscard]] const std::string& LocalIP() const { return LocalIP_; }
  [[nodiscard]] const std::string& LocalHostName() const { return LocalHostName_; }
  [[nodiscard]] std::int32_t BytesReceived() const;

  [[nodiscard]] std::int32_t RemotePort() const { return RemotePort_; }
  void SetRemotePort(std::int32_t port) { RemotePort_ = port; }
  [[nodiscard]] std::int32_t LocalPort() const { return LocalPort_; }
  void SetLocalPort(std::int32_t port) { LocalPort_ = port; }
  [[nodiscard]] SocketProtocol Protocol() const { return Protocol_; }
  /// Has no effect while a socket exists.
  void SetProtocol(SocketProtocol protocol);
  [[nodiscard]] const std::string& RemoteHost() const { return RemoteHost_; }
  /// A dotted address is also the new `RemoteHostIP`, and on a UDP socket one that ends in ".255"
  /// turns broadcasting on, any other off.
  void SetRemoteHost(std::string_view host);

  /// For one who has enough to do with what has come: no data of a connection, nor its close,
  /// until `ReleaseStream`.
  void HoldStream() const;
  void ReleaseStream() const;

  // For MSocketSupport alone.
  void PostSocketEvent(int eventId, int error);
  void PostGetHostEvent(std::int32_t requestId, std::uint32_t hostAddress,
                        const std::string& hostName, int error);

 private:
  enum class FollowUp { kConnect = 0, kSend = 1 };

  [[nodiscard]] bool IsTcp() const { return Protocol_ == kTcpProtocol; }
  std::int32_t vbSocket();
  bool SocketExists();
  void SocketBufferSizes();
  void StoreRemoteHost(std::string_view host);
  int ConnectTo(std::uint32_t ip);
  void BindNow(std::int32_t lngLocalPort, std::string_view strLocalIP);
  Sockets::Result RecvToBuffer();
  void RecvData(SocketValue& varData, std::optional<int> varType,
                std::optional<std::int32_t> maxLen, bool take);
  void DestroySocket();
  void SendBufferedData();
  Sockets::Result OfferBuffer();
  void AfterSend(std::int32_t sent);
  void ReadEvent();
  void WriteEvent();
  void AcceptEvent();
  void ConnectEvent();
  void CloseEvent();
  bool DrainForClose();
  void RaiseError(int number, const std::string& source = {});

  CSocketEvents& events_;
  FollowUp PendingAction_ = FollowUp::kConnect;
  SocketProtocol Protocol_ = kTcpProtocol;
  SocketState state_ = StateClosed;
  std::string LocalHostName_;
  std::string LocalIP_;
  std::int32_t LocalPort_ = 0;
  std::string RemoteHost_;
  std::string RemoteHostIP_;
  std::int32_t RemotePort_ = 0;
  std::int32_t SocketHandle_ = Sockets::kNone;
  std::int32_t RequestID_ = 0;
  std::string SendBuffer_;
  std::string RecvBuffer_;
  std::int32_t SendBufferSize_ = 0;
  std::int32_t RecvBufferSize_ = 0;
  std::int32_t MaxDatagramSize_;
  bool Bound_ = false;
  bool SendPending_ = false;
  bool Broadcast_ = false;
  // Expires with the system socket, and so with the object.
  std::shared_ptr<char> socketLife_;
};
