#include "chat/CSocket.h"

#include <algorithm>
#include <limits>

#include "chat/HostLookUp.h"
#include "chat/MSocketSupport.h"
#include "chat/SocketError.h"
#include "chat/SocketWatch.h"
#include "core/basDebugLog.h"

namespace {

constexpr int kBacklog = 5;
constexpr int kOverflow = 6;
constexpr int kWrongState = 40006;

// A port's 16-bit form. It is made only when a call needs it; until then any number is kept.
std::uint16_t PortOf(std::int32_t port) {
  if (port < 0 || port > std::numeric_limits<std::uint16_t>::max()) {
    throw SocketError(kOverflow, "CSocket", "Overflow.");
  }
  return static_cast<std::uint16_t>(port);
}

[[noreturn]] void FailSendState() {
  throw SocketError(kWrongState, "CSocket.SendData",
                    "Wrong protocol or connection state for the requested transaction or request.");
}

void Check(int error, std::string_view source) {
  if (error != 0) FailSocket(error, source);
}

std::int32_t Length(const std::string& buffer) {
  return static_cast<std::int32_t>(buffer.size());
}

}  // namespace

CSocket::CSocket(CSocketEvents& events)
    : events_(events), MaxDatagramSize_(MSocketSupport::InitWinsockService()) {}

CSocket::~CSocket() {
  MSocketSupport::ForgetLookUps(*this);
  Trapped("CSocket.~CSocket", [this] { DestroySocket(); });
  MSocketSupport::StopIdleService();
}

std::int32_t CSocket::BytesReceived() const {
  return Length(RecvBuffer_);
}

void CSocket::SetProtocol(SocketProtocol protocol) {
  if (SocketHandle_ == Sockets::kNone) Protocol_ = protocol;
}

void CSocket::SetRemoteHost(std::string_view host) {
  FailingAs("CSocket.RemoteHost", [&] { StoreRemoteHost(host); });
}

void CSocket::StoreRemoteHost(std::string_view host) {
  RemoteHost_ = host;
  if (!Sockets::ReadAddress(RemoteHost_)) return;
  RemoteHostIP_ = RemoteHost_;
  if (IsTcp() || !SocketExists()) return;
  const bool wanted = RemoteHost_.ends_with(".255");
  if (wanted == Broadcast_) return;
  Check(Sockets::SetBroadcast(SocketHandle_, wanted), "CSocket.RemoteHost");
  Broadcast_ = wanted;
}

// The system socket: made on first use.

std::int32_t CSocket::vbSocket() {
  return FailingAs("CSocket.vbSocket", [this] {
    // Another object may have stopped the service on its way out.
    MSocketSupport::InitWinsockService();
    const Sockets::Result opened =
        Sockets::Open(IsTcp() ? Sockets::Kind::kStream : Sockets::Kind::kDatagram);
    Check(opened.error, "CSocket.vbSocket");
    try {
      MSocketSupport::RegisterSocket(opened.value, *this);
    } catch (const SocketError&) {
      Sockets::Close(opened.value);
      throw;
    }
    return opened.value;
  });
}

bool CSocket::SocketExists() {
  if (SocketHandle_ != Sockets::kNone) return true;
  SocketHandle_ = vbSocket();
  if (SocketHandle_ == Sockets::kNone) return false;
  socketLife_ = std::make_shared<char>();
  SocketBufferSizes();
  if (!IsTcp()) MSocketSupport::ExpectDatagrams(SocketHandle_);
  return true;
}

void CSocket::SocketBufferSizes() {
  RecvBufferSize_ = MaxDatagramSize_;
  SendBufferSize_ = MaxDatagramSize_;
  if (!IsTcp()) return;
  const Sockets::Result receive = Sockets::ReceiveBufferSize(SocketHandle_);
  Check(receive.error, "CSocket.SocketBufferSizes");
  const Sockets::Result send = Sockets::SendBufferSize(SocketHandle_);
  Check(send.error, "CSocket.SocketBufferSizes");
  RecvBufferSize_ = receive.value;
  SendBufferSize_ = send.value;
}

void CSocket::DestroySocket() {
  RecvBuffer_.clear();
  if (SocketHandle_ == Sockets::kNone) return;
  MSocketSupport::UnregisterSocket(SocketHandle_);
  Check(Sockets::Close(SocketHandle_), "CSocket.DestroySocket");
  SocketHandle_ = Sockets::kNone;
  socketLife_.reset();
  Bound_ = false;
  Broadcast_ = false;
}

// Opening and closing.

void CSocket::Connect(std::string_view strRemoteHost, std::optional<std::int32_t> lngRemotePort) {
  FailingAs("CSocket.Connect", [&] {
    if (!SocketExists()) return;
    PendingAction_ = FollowUp::kConnect;
    if (!strRemoteHost.empty()) StoreRemoteHost(strRemoteHost);
    if (lngRemotePort) RemotePort_ = *lngRemotePort;
    if (RemoteHost_.empty()) FailSocket(Sockets::kAddressNotAvailable, "CSocket.Connect");
    if (const auto address = Sockets::ReadAddress(RemoteHost_)) {
      return Check(ConnectTo(*address), "CSocket.Connect");
    }
    state_ = StateResolvingHost;
    try {
      RequestID_ = MSocketSupport::ResolveHost(RemoteHost_, *this);
    } catch (const SocketError&) {
      DestroySocket();
      throw;
    }
  });
}

// Connects, and returns the error that the connect event won't bring. A connect that succeeds at
// once has its event later all the same.
int CSocket::ConnectTo(std::uint32_t ip) {
  const int error = Sockets::Connect(SocketHandle_, {ip, PortOf(RemotePort_)});
  if (error != 0 && error != Sockets::kWouldBlock) return error;
  if (error == Sockets::kWouldBlock) state_ = StateConnecting;
  MSocketSupport::ExpectConnect(SocketHandle_);
  return 0;
}

void CSocket::CloseSocket() {
  FailingAs("CSocket.CloseSocket", [this] {
    if (SocketHandle_ == Sockets::kNone) return;
    if (state_ == StateConnected) {
      state_ = StateClosing;
      return Check(Sockets::ShutDownSending(SocketHandle_), "CSocket.CloseSocket");
    }
    DestroySocket();
    state_ = StateClosed;
  });
}

void CSocket::Bind(std::int32_t lngLocalPort, std::string_view strLocalIP) {
  FailingAs("CSocket.Bind", [&] { BindNow(lngLocalPort, strLocalIP); });
}

void CSocket::BindNow(std::int32_t lngLocalPort, std::string_view strLocalIP) {
  if (!SocketExists()) return;
  if (!strLocalIP.empty()) LocalIP_ = strLocalIP;
  if (lngLocalPort > 0) LocalPort_ = lngLocalPort;
  const auto address = LocalIP_.empty() ? std::uint32_t{0} : Sockets::ReadAddress(LocalIP_);
  if (!address) FailSocket(Sockets::kAddressNotAvailable, "CSocket.Bind");
  Check(Sockets::Bind(SocketHandle_, {*address, PortOf(LocalPort_)}), "CSocket.Bind");
  Bound_ = true;
}

void CSocket::Listen() {
  FailingAs("CSocket.Listen", [this] {
    if (!SocketExists()) return;
    state_ = StateError;  // until all has gone well
    if (!Bound_) BindNow(0, {});
    Check(Sockets::Listen(SocketHandle_, kBacklog), "CSocket.Listen");
    state_ = StateListening;
    MSocketSupport::ExpectRequests(SocketHandle_);
  });
}

void CSocket::Accept(std::int32_t requestID) {
  FailingAs("CSocket.Accept", [&] {
    Sockets::Address local;
    Sockets::Address peer;
    auto kind = Sockets::Kind::kStream;
    Check(Sockets::LocalAddress(requestID, local), "CSocket.Accept");
    Check(Sockets::PeerAddress(requestID, peer), "CSocket.Accept");
    Check(Sockets::KindOf(requestID, kind), "CSocket.Accept");
    DestroySocket();  // what the object had before
    SocketHandle_ = requestID;
    socketLife_ = std::make_shared<char>();
    LocalPort_ = local.port;
    LocalIP_ = Sockets::DottedAddress(local.ip);
    LocalHostName_ = LocalIP_;
    RemotePort_ = peer.port;
    RemoteHostIP_ = Sockets::DottedAddress(peer.ip);
    RemoteHost_ = RemoteHostIP_;
    Protocol_ = kind == Sockets::Kind::kStream ? kTcpProtocol : kUdpProtocol;
    SocketBufferSizes();
    MSocketSupport::RegisterSocket(SocketHandle_, *this);
    if (IsTcp()) {
      MSocketSupport::ExpectStream(SocketHandle_);
    } else {
      MSocketSupport::ExpectDatagrams(SocketHandle_);
    }
    state_ = StateConnected;
  });
}

// Bytes in.

// One read. A failure is the caller's to raise.
Sockets::Result CSocket::RecvToBuffer() {
  const std::size_t waiting = RecvBuffer_.size();
  const auto size = static_cast<std::size_t>(RecvBufferSize_);
  RecvBuffer_.resize(waiting + size);
  Sockets::Address from;
  const Sockets::Result read =
      IsTcp() ? Sockets::Receive(SocketHandle_, RecvBuffer_.data() + waiting, size)
              : Sockets::ReceiveFrom(SocketHandle_, RecvBuffer_.data() + waiting, size, from);
  RecvBuffer_.resize(waiting + static_cast<std::size_t>(std::max(read.value, 0)));
  if (IsTcp() || read.error != 0) return read;
  RemotePort_ = from.port;
  RemoteHostIP_ = Sockets::DottedAddress(from.ip);
  const std::string name = HostLookUp::NameOf(from.ip);
  if (!name.empty()) RemoteHost_ = name;
  return read;
}

void CSocket::GetData(SocketValue& varData, std::optional<int> varType,
                      std::optional<std::int32_t> maxLen) {
  FailingAs("CSocket.GetData", [&] { RecvData(varData, varType, maxLen, true); });
}

void CSocket::PeekData(SocketValue& varData, std::optional<int> varType,
                       std::optional<std::int32_t> maxLen) {
  FailingAs("CSocket.PeekData", [&] { RecvData(varData, varType, maxLen, false); });
}

void CSocket::RecvData(SocketValue& varData, std::optional<int> varType,
                       std::optional<std::int32_t> maxLen, bool take) {
  if (RecvBuffer_.empty()) return;
  const std::int32_t limit = maxLen.value_or(0);
  const bool isPart = limit > 0 && limit <= Length(RecvBuffer_);
  const std::size_t count = isPart ? static_cast<std::size_t>(limit) : RecvBuffer_.size();
  varData = ValueOf(std::string_view(RecvBuffer_).substr(0, count), varType.value_or(kTextValue));
  if (take) RecvBuffer_.erase(0, count);
}

void CSocket::HoldStream() const {
  MSocketSupport::HoldStream(SocketHandle_);
}

void CSocket::ReleaseStream() const {
  MSocketSupport::ReleaseStream(SocketHandle_);
}

// Bytes out.

void CSocket::SendData(const SocketValue& varData) {
  try {
    FailingAs("CSocket.SendData", [&] {
      if (IsTcp()) {
        if (SocketHandle_ == Sockets::kNone) FailSendState();
      } else if (!SocketExists()) {
        return;
      }
      // What still waits of an earlier send is lost on purpose: one message, one send.
      SendBuffer_ = BytesOf(varData);
      SendPending_ = true;
      SendBufferedData();
    });
  } catch (const SocketError& error) {
    if (error.Number() == Sockets::kNotSocket) FailSendState();
    throw;
  }
}

void CSocket::SendBufferedData() {
  SendPending_ = true;
  if (!IsTcp() && RemoteHostIP_.empty()) {
    PendingAction_ = FollowUp::kSend;
    RequestID_ = MSocketSupport::ResolveHost(RemoteHost_, *this);
    return;
  }
  const Sockets::Result sent = OfferBuffer();
  if (sent.error == 0) return AfterSend(sent.value);
  if (sent.error != Sockets::kWouldBlock) FailSocket(sent.error, "CSocket.SendData");
  MSocketSupport::ExpectWrite(SocketHandle_);
}

Sockets::Result CSocket::OfferBuffer() {
  if (IsTcp()) return Sockets::Send(SocketHandle_, SendBuffer_);
  const auto ip = Sockets::ReadAddress(RemoteHostIP_);
  if (!ip) return {-1, Sockets::kAddressNotAvailable};
  return Sockets::SendTo(SocketHandle_, SendBuffer_, {*ip, PortOf(RemotePort_)});
}

void CSocket::AfterSend(std::int32_t sent) {
  SendBuffer_.erase(0, static_cast<std::size_t>(sent));
  if (SendBuffer_.empty()) {
    MSocketSupport::PostWriteEvent(SocketHandle_);  // brings `OnSendComplete`
  } else {
    MSocketSupport::ExpectWrite(SocketHandle_);
  }
  events_.OnSendProgress(sent, Length(SendBuffer_));
}

// Events out of the event loop. A handler may destroy the socket or the object: after one, only
// what `socketLife_` says still lives is touched.

void CSocket::RaiseError(int number, const std::string& source) {
  events_.OnError(static_cast<std::int16_t>(number),
                  std::string(MSocketSupport::GetErrorDescription(number)), 0, source, {}, 0,
                  false);
}

void CSocket::PostSocketEvent(int eventId, int error) {
  FailingAs("CSocket.PostSocketEvent", [&] {
    if (error >= 1) {
      state_ = StateError;
      DestroySocket();
      return RaiseError(error);
    }
    switch (eventId) {
      case kReadEvent:
        return ReadEvent();
      case kWriteEvent:
        return WriteEvent();
      case kAcceptEvent:
        return AcceptEvent();
      case kConnectEvent:
        return ConnectEvent();
      case kCloseEvent:
        return CloseEvent();
      default:
        return;
    }
  });
}

void CSocket::ReadEvent() {
  const Sockets::Result read = RecvToBuffer();
  Check(read.error, "CSocket.RecvToBuffer");
  if (read.value > 0) events_.OnDataArrival(Length(RecvBuffer_));
}

void CSocket::WriteEvent() {
  if (!SendBuffer_.empty()) return SendBufferedData();
  if (!SendPending_) return;
  SendPending_ = false;
  events_.OnSendComplete();
}

void CSocket::AcceptEvent() {
  const Sockets::Result accepted = Sockets::Accept(SocketHandle_);
  if (accepted.error != 0) MSocketSupport::PauseRequests(SocketHandle_);
  Check(accepted.error, "CSocket.PostSocketEvent");
  events_.OnConnectionRequest(accepted.value);
}

void CSocket::ConnectEvent() {
  Sockets::Address local;
  Check(Sockets::LocalAddress(SocketHandle_, local), "CSocket.PostSocketEvent");
  LocalPort_ = local.port;
  LocalIP_ = Sockets::DottedAddress(local.ip);
  LocalHostName_ = HostLookUp::NameOf(local.ip);
  if (LocalHostName_.empty()) LocalHostName_ = LocalIP_;
  state_ = StateConnected;
  events_.OnConnect();
}

void CSocket::CloseEvent() {
  if (!DrainForClose()) return;
  const std::weak_ptr<char> life = socketLife_;
  if (state_ != StateClosing) {
    state_ = StateClosing;
    // The peer may be gone for good; that is no reason to stay.
    if (!SendBuffer_.empty()) {
      Trapped("CSocket.PostSocketEvent", [this] { SendBufferedData(); });
    }
  }
  if (life.expired()) return;
  DestroySocket();
  state_ = StateClosed;
  events_.OnClose();
}

// Reads what the network still holds. False if a handler has ended the socket meanwhile.
bool CSocket::DrainForClose() {
  const std::weak_ptr<char> life = socketLife_;
  while (RecvToBuffer().value > 0) {
    events_.OnDataArrival(Length(RecvBuffer_));
    if (life.expired()) return false;
  }
  return true;
}

// A look-up can't be called off. An earlier one that fails counts against a later one, and one that
// ends after `CloseSocket` goes on to a connect without a socket, which fails with 10038. Kept on
// purpose.
void CSocket::PostGetHostEvent(std::int32_t requestId, std::uint32_t hostAddress,
                               const std::string& hostName, int error) {
  FailingAs("CSocket.PostGetHostEvent", [&] {
    if (error > 0 && !Sockets::ReadAddress(hostName)) {
      state_ = StateError;
      return RaiseError(error);
    }
    if (requestId == 0 || requestId != RequestID_) return;
    state_ = StateHostResolved;
    RemoteHost_ = hostName;
    RemoteHostIP_ = Sockets::DottedAddress(hostAddress);
    if (PendingAction_ == FollowUp::kSend) return SendBufferedData();
    const int failed = ConnectTo(hostAddress);
    if (failed != 0) RaiseError(failed, "CSocket.PostGetHostEvent");
  });
}
