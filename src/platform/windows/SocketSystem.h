#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

#include "platform/Sockets.h"

namespace Sockets {

/// A handle as the calls of the system want it.
inline SOCKET ToSystem(Handle handle) {
  return handle == kNone ? INVALID_SOCKET : static_cast<SOCKET>(handle);
}

}  // namespace Sockets
