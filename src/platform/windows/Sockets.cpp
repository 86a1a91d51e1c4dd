#include "platform/Sockets.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/SocketCalls.h"

// The service's error numbers are the program's own, so none is turned here. Handles of sockets
// fit 31 bits, as all handles that the kernel gives to programs do.
namespace Sockets {
namespace {

constexpr WORD kVersion = 0x0101;

Result ResultOf(int value) {
  if (value == SOCKET_ERROR) return {-1, WSAGetLastError()};
  return {value, 0};
}

// A new socket as one that never blocks.
Result NonBlocking(SOCKET handle) {
  if (handle == INVALID_SOCKET) return {-1, WSAGetLastError()};
  u_long on = 1;
  if (ioctlsocket(handle, static_cast<long>(FIONBIO), &on) != 0) {
    const int error = WSAGetLastError();
    closesocket(handle);
    return {-1, error};
  }
  return {static_cast<std::int32_t>(handle), 0};
}

Host HostOf(const hostent* found) {
  if (found == nullptr) return {WSAGetLastError(), 0, {}};
  Host host{0, 0, found->h_name != nullptr ? found->h_name : ""};
  if (found->h_addr_list[0] != nullptr) {
    host.ip = ntohl(reinterpret_cast<const in_addr*>(found->h_addr_list[0])->s_addr);
  }
  return host;
}

}  // namespace

int StatusOf(int status) {
  return status == 0 ? 0 : WSAGetLastError();
}

Result Start() {
  WSADATA service{};
  const int error = WSAStartup(kVersion, &service);
  if (error != 0) return {-1, error};
  return {static_cast<std::int32_t>(service.iMaxUdpDg), 0};
}

void Stop() {
  WSACleanup();
}

Result Open(Kind kind) {
  const bool isStream = kind == Kind::kStream;
  return NonBlocking(
      socket(AF_INET, isStream ? SOCK_STREAM : SOCK_DGRAM, isStream ? IPPROTO_TCP : IPPROTO_UDP));
}

int Close(Handle handle) {
  return StatusOf(closesocket(ToSystem(handle)));
}

int ShutDownSending(Handle handle) {
  return StatusOf(shutdown(ToSystem(handle), SD_SEND));
}

int Connect(Handle handle, const Address& address) {
  sockaddr_in system = ToSystem(address);
  return StatusOf(connect(ToSystem(handle), Plain(system), sizeof system));
}

Result Accept(Handle handle) {
  sockaddr_in peer{};
  int size = sizeof peer;
  return NonBlocking(accept(ToSystem(handle), Plain(peer), &size));
}

Result Send(Handle handle, std::string_view bytes) {
  return ResultOf(send(ToSystem(handle), bytes.data(), static_cast<int>(bytes.size()), 0));
}

Result SendTo(Handle handle, std::string_view bytes, const Address& address) {
  sockaddr_in system = ToSystem(address);
  return ResultOf(sendto(ToSystem(handle), bytes.data(), static_cast<int>(bytes.size()), 0,
                         Plain(system), sizeof system));
}

Result Receive(Handle handle, char* buffer, std::size_t size) {
  return ResultOf(recv(ToSystem(handle), buffer, static_cast<int>(size), 0));
}

Result ReceiveFrom(Handle handle, char* buffer, std::size_t size, Address& from) {
  sockaddr_in system{};
  int addressSize = sizeof system;
  const Result result = ResultOf(
      recvfrom(ToSystem(handle), buffer, static_cast<int>(size), 0, Plain(system), &addressSize));
  from = FromSystem(system);
  return result;
}

Result Peek(Handle handle) {
  char first = 0;
  return ResultOf(recv(ToSystem(handle), &first, 1, MSG_PEEK));
}

int TakeError(Handle handle) {
  const Result pending = Option(handle, SO_ERROR);
  return pending.error != 0 ? pending.error : pending.value;
}

std::optional<std::uint32_t> ReadAddress(const std::string& text) {
  // The service reads a single blank as 0.0.0.0.
  if (text.find_first_not_of(' ') == std::string::npos) return std::nullopt;
  const unsigned long address = inet_addr(text.c_str());
  if (address == INADDR_NONE) return std::nullopt;
  return static_cast<std::uint32_t>(ntohl(address));
}

std::string DottedAddress(std::uint32_t ip) {
  in_addr system{};
  system.s_addr = htonl(ip);
  return inet_ntoa(system);
}

// Each thread has a result record of its own.
Host LookUpName(const std::string& name) {
  // The service takes an empty name for this machine's.
  if (name.empty()) return {kHostNotFound, 0, {}};
  return HostOf(gethostbyname(name.c_str()));
}

Host LookUpAddress(std::uint32_t ip) {
  const unsigned long system = htonl(ip);
  return HostOf(gethostbyaddr(reinterpret_cast<const char*>(&system), sizeof system, AF_INET));
}

}  // namespace Sockets
