#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The system's own sockets, IPv4 alone: TCP and UDP, never blocking.
///
/// Errors are numbers of the socket service of Windows (10004 to 11004), on every system: where
/// the system has numbers of its own, one table turns them. 0 means success.
namespace Sockets {

using Handle = std::int32_t;
inline constexpr Handle kNone = -1;

/// The numbers that the code compares with.
enum ErrorNumber : int {
  kInterrupted = 10004,
  kWouldBlock = 10035,
  kNotSocket = 10038,
  kAddressNotAvailable = 10049,
  kNotConnected = 10057,
  kNoBufferSpace = 10055,
  kHostNotFound = 11001,
};

enum class Kind { kStream, kDatagram };

/// An IPv4 address, its first byte the highest, and a port.
struct Address {
  std::uint32_t ip = 0;
  std::uint16_t port = 0;
};

/// What a call gave: a handle or a number of bytes; -1 with an error.
struct Result {
  std::int32_t value = -1;
  int error = 0;
};

/// Starts the socket service, and gives the largest UDP datagram in bytes.
Result Start();
void Stop();

/// A new socket.
Result Open(Kind kind);
int Close(Handle handle);
/// Ends the send direction only.
int ShutDownSending(Handle handle);
/// `kWouldBlock` while the connection is being made.
int Connect(Handle handle, const Address& address);
int Bind(Handle handle, const Address& address);
int Listen(Handle handle, int backlog);
/// The handle of the next waiting connection.
Result Accept(Handle handle);

/// One send of as many of the bytes as the system takes.
Result Send(Handle handle, std::string_view bytes);
Result SendTo(Handle handle, std::string_view bytes, const Address& address);
/// One read of at most `size` bytes; 0 at the end of a stream.
Result Receive(Handle handle, char* buffer, std::size_t size);
Result ReceiveFrom(Handle handle, char* buffer, std::size_t size, Address& from);
/// Whether a read would give bytes (1), the end of the stream (0), or the error.
Result Peek(Handle handle);

int LocalAddress(Handle handle, Address& address);
int PeerAddress(Handle handle, Address& address);
/// Sizes of the socket's own buffers in bytes.
Result SendBufferSize(Handle handle);
Result ReceiveBufferSize(Handle handle);
int KindOf(Handle handle, Kind& kind);
int SetBroadcast(Handle handle, bool on);
/// How a connect ended: reads and clears the socket's pending error.
int TakeError(Handle handle);

/// A dotted address as the system's `inet_addr` reads it; nothing if it doesn't. 255.255.255.255
/// can't be read, as its value means failure.
std::optional<std::uint32_t> ReadAddress(const std::string& text);
std::string DottedAddress(std::uint32_t ip);

struct Host {
  int error = 0;
  std::uint32_t ip = 0;
  std::string name;
};

/// First address and canonical name of a host. May take minutes; safe on any thread.
Host LookUpName(const std::string& name);
/// Name of an address, or an error. May take minutes; safe on any thread.
Host LookUpAddress(std::uint32_t ip);

}  // namespace Sockets
