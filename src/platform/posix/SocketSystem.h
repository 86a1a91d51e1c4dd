#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include "platform/Sockets.h"

namespace Sockets {

/// A handle as the calls of the system want it.
inline int ToSystem(Handle handle) {
  return handle;
}

}  // namespace Sockets
