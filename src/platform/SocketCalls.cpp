#include "platform/SocketCalls.h"

namespace Sockets {
namespace {

template <typename Call>
int AskAddress(Call call, Handle handle, Address& address) {
  sockaddr_in system{};
  socklen_t size = sizeof system;
  const int status = call(ToSystem(handle), Plain(system), &size);
  if (status != 0) return StatusOf(status);
  address = FromSystem(system);
  return 0;
}

}  // namespace

sockaddr_in ToSystem(const Address& address) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_port = htons(address.port);
  result.sin_addr.s_addr = htonl(address.ip);
  return result;
}

Address FromSystem(const sockaddr_in& address) {
  return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

sockaddr* Plain(sockaddr_in& address) {
  return reinterpret_cast<sockaddr*>(&address);
}

Result Option(Handle handle, int option) {
  int value = 0;
  socklen_t size = sizeof value;
  const int status =
      getsockopt(ToSystem(handle), SOL_SOCKET, option, reinterpret_cast<char*>(&value), &size);
  return status == 0 ? Result{value, 0} : Result{-1, StatusOf(status)};
}

int Bind(Handle handle, const Address& address) {
  sockaddr_in system = ToSystem(address);
  return StatusOf(bind(ToSystem(handle), Plain(system), sizeof system));
}

int Listen(Handle handle, int backlog) {
  return StatusOf(listen(ToSystem(handle), backlog));
}

int LocalAddress(Handle handle, Address& address) {
  return AskAddress(getsockname, handle, address);
}

int PeerAddress(Handle handle, Address& address) {
  return AskAddress(getpeername, handle, address);
}

Result SendBufferSize(Handle handle) {
  return Option(handle, SO_SNDBUF);
}

Result ReceiveBufferSize(Handle handle) {
  return Option(handle, SO_RCVBUF);
}

int KindOf(Handle handle, Kind& kind) {
  const Result type = Option(handle, SO_TYPE);
  kind = type.value == SOCK_STREAM ? Kind::kStream : Kind::kDatagram;
  return type.error;
}

int SetBroadcast(Handle handle, bool on) {
  const int value = on ? 1 : 0;
  return StatusOf(setsockopt(ToSystem(handle), SOL_SOCKET, SO_BROADCAST,
                             reinterpret_cast<const char*>(&value), sizeof value));
}

}  // namespace Sockets
