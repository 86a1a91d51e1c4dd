#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "platform/Sockets.h"

/// Look-ups of hosts, off the program's thread: the system's own may take minutes.
namespace HostLookUp {

using Answer = std::function<void(const Sockets::Host& host)>;

/// Looks up first address and canonical name of a host. `answer` is called from the event loop of
/// the calling thread, once, or never if the application ends first. False if the system has no
/// thread to give.
bool Start(const std::string& name, Answer answer);

/// Name of an address; empty if it has none, or none that the system finds in a quarter of a
/// second. The last address that the system answered for is remembered.
std::string NameOf(std::uint32_t ip);

}  // namespace HostLookUp
