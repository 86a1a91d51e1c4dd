#include "platform/Sockets.h"

#include <array>
#include <cerrno>

#include <arpa/inet.h>
#include <netdb.h>
#include <unistd.h>

#include "platform/SocketCalls.h"

namespace Sockets {
namespace {

// A UDP packet's 65,535 bytes without the heads of IP and UDP.
constexpr int kLargestDatagram = 65507;

struct ErrorRow {
  int system;
  int number;
};

constexpr std::array kErrors = std::to_array<ErrorRow>({
    {EINTR, kInterrupted},
    {EACCES, 10013},
    {EPERM, 10013},
    {EFAULT, 10014},
    {EINVAL, 10022},
    {EMFILE, 10024},
    {ENFILE, 10024},
    {EAGAIN, kWouldBlock},
    {EINPROGRESS, 10036},
    {EALREADY, 10037},
    {EBADF, kNotSocket},
    {ENOTSOCK, kNotSocket},
    {EDESTADDRREQ, 10039},
    {EMSGSIZE, 10040},
    {EPROTOTYPE, 10041},
    {ENOPROTOOPT, 10042},
    {EPROTONOSUPPORT, 10043},
    {ESOCKTNOSUPPORT, 10044},
    {EOPNOTSUPP, 10045},
    {EPFNOSUPPORT, 10046},
    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},
    {EADDRNOTAVAIL, kAddressNotAvailable},
    {ENETDOWN, 10050},
    {ENETUNREACH, 10051},
    {ENETRESET, 10052},
    {ECONNABORTED, 10053},
    {ECONNRESET, 10054},
    {ENOBUFS, kNoBufferSpace},
    {ENOMEM, kNoBufferSpace},
    {EISCONN, 10056},
    {ENOTCONN, kNotConnected},
    {EPIPE, 10058},
    {ESHUTDOWN, 10058},
    {ETIMEDOUT, 10060},
    {ECONNREFUSED, 10061},
    {EHOSTDOWN, 10064},
    {EHOSTUNREACH, 10065},
    // How look-ups fail; the system keeps these below 0.
    {EAI_NONAME, kHostNotFound},
    {EAI_AGAIN, 11002},
    {EAI_FAIL, 11003},
    {EAI_NODATA, 11004},
    {EAI_ADDRFAMILY, 11004},
    {EAI_MEMORY, kNoBufferSpace},
});
static_assert(EAGAIN == EWOULDBLOCK);

int ErrorOf(int system) {
  constexpr int kSystemCallFailure = 10107;
  for (const ErrorRow& row : kErrors) {
    if (row.system == system) return row.number;
  }
  return kSystemCallFailure;
}

Result ResultOf(ssize_t value) {
  if (value < 0) return {-1, ErrorOf(errno)};
  return {static_cast<std::int32_t>(value), 0};
}

// `call` again for as long as a signal ends it.
template <typename Call>
ssize_t Uninterrupted(Call call) {
  ssize_t result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace

int StatusOf(int status) {
  return status == 0 ? 0 : ErrorOf(errno);
}

Result Start() {
  return {kLargestDatagram, 0};
}

void Stop() {}

Result Open(Kind kind) {
  const bool isStream = kind == Kind::kStream;
  const int type = (isStream ? SOCK_STREAM : SOCK_DGRAM) | SOCK_NONBLOCK | SOCK_CLOEXEC;
  return ResultOf(socket(AF_INET, type, isStream ? IPPROTO_TCP : IPPROTO_UDP));
}

int Close(Handle handle) {
  return StatusOf(close(handle));
}

int ShutDownSending(Handle handle) {
  return StatusOf(shutdown(handle, SHUT_WR));
}

int Connect(Handle handle, const Address& address) {
  // The system's first call after a connection stands would report success.
  Address peer;
  auto kind = Kind::kStream;
  if (KindOf(handle, kind) == 0 && kind == Kind::kStream && PeerAddress(handle, peer) == 0) {
    return ErrorOf(EISCONN);
  }
  sockaddr_in system = ToSystem(address);
  const int status = connect(handle, Plain(system), sizeof system);
  // After a signal the connection is being made as well.
  if (status != 0 && (errno == EINPROGRESS || errno == EINTR)) return kWouldBlock;
  return StatusOf(status);
}

Result Accept(Handle handle) {
  sockaddr_in peer{};
  return ResultOf(Uninterrupted([&] {
    socklen_t size = sizeof peer;
    return accept4(handle, Plain(peer), &size, SOCK_NONBLOCK | SOCK_CLOEXEC);
  }));
}

Result Send(Handle handle, std::string_view bytes) {
  const ssize_t sent =
      Uninterrupted([&] { return send(handle, bytes.data(), bytes.size(), MSG_NOSIGNAL); });
  const Result result = ResultOf(sent);
  if (sent < 0 && (errno == EPIPE || errno == EAGAIN)) {
    // The system has these numbers for sockets without a connection as well: EPIPE before a
    // connect, EAGAIN during one.
    Address peer;
    if (PeerAddress(handle, peer) == kNotConnected) return {-1, kNotConnected};
  }
  return result;
}

Result SendTo(Handle handle, std::string_view bytes, const Address& address) {
  sockaddr_in system = ToSystem(address);
  return ResultOf(Uninterrupted([&] {
    return sendto(handle, bytes.data(), bytes.size(), MSG_NOSIGNAL, Plain(system), sizeof system);
  }));
}

Result Receive(Handle handle, char* buffer, std::size_t size) {
  return ResultOf(Uninterrupted([&] { return recv(handle, buffer, size, 0); }));
}

Result ReceiveFrom(Handle handle, char* buffer, std::size_t size, Address& from) {
  sockaddr_in system{};
  const Result result = ResultOf(Uninterrupted([&] {
    socklen_t addressSize = sizeof system;
    return recvfrom(handle, buffer, size, 0, Plain(system), &addressSize);
  }));
  from = FromSystem(system);
  return result;
}

Result Peek(Handle handle) {
  char first = 0;
  return ResultOf(Uninterrupted([&] { return recv(handle, &first, 1, MSG_PEEK); }));
}

int TakeError(Handle handle) {
  const Result pending = Option(handle, SO_ERROR);
  if (pending.error != 0) return pending.error;
  return pending.value == 0 ? 0 : ErrorOf(pending.value);
}

std::optional<std::uint32_t> ReadAddress(const std::string& text) {
  const in_addr_t address = inet_addr(text.c_str());
  if (text.empty() || address == INADDR_NONE) return std::nullopt;
  return ntohl(address);
}

std::string DottedAddress(std::uint32_t ip) {
  in_addr system{htonl(ip)};
  std::array<char, INET_ADDRSTRLEN> text{};
  inet_ntop(AF_INET, &system, text.data(), text.size());
  return text.data();
}

Host LookUpName(const std::string& name) {
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = AI_CANONNAME;
  addrinfo* found = nullptr;
  const int status = getaddrinfo(name.c_str(), nullptr, &wanted, &found);
  if (status != 0) return {ErrorOf(status == EAI_SYSTEM ? errno : status), 0, {}};
  sockaddr_in first{};
  // The list is of IPv4 addresses, as asked for.
  first = *reinterpret_cast<const sockaddr_in*>(found->ai_addr);
  Host host{0, FromSystem(first).ip, found->ai_canonname != nullptr ? found->ai_canonname : name};
  freeaddrinfo(found);
  return host;
}

Host LookUpAddress(std::uint32_t ip) {
  sockaddr_in system = ToSystem({ip, 0});
  std::array<char, NI_MAXHOST> name{};
  const int status =
      getnameinfo(Plain(system), sizeof system, name.data(), name.size(), nullptr, 0, NI_NAMEREQD);
  if (status != 0) return {ErrorOf(status == EAI_SYSTEM ? errno : status), 0, {}};
  return {0, ip, name.data()};
}

}  // namespace Sockets
