#pragma once

#include "SocketSystem.h"
#include "platform/Sockets.h"

/// What the files of the sockets share among themselves. A `SocketSystem.h` in either folder has
/// the system's headers, and what a handle is there.
namespace Sockets {

/// 0, or the error number of a call that has just failed with `status`.
int StatusOf(int status);

sockaddr_in ToSystem(const Address& address);
Address FromSystem(const sockaddr_in& address);
/// The one place where an address changes its type, as the calls of the system want it.
sockaddr* Plain(sockaddr_in& address);

/// The value of one of a socket's own options.
Result Option(Handle handle, int option);

}  // namespace Sockets
