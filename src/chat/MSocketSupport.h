#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Sockets.h"

class CSocket;

/// What all sockets share: start and stop of the socket service, the registry of live sockets, the
/// road of their events, and the look-ups. All of it belongs to the thread of the event loop.
namespace MSocketSupport {

/// Starts the service unless it runs. The largest UDP datagram in bytes. Fails with the service's
/// number.
std::int32_t InitWinsockService();
/// Stops the service if it runs and no socket is registered.
void StopIdleService();
[[nodiscard]] bool ServiceStarted();

/// Enters a socket; from here on the event loop brings its events to `socket`, which must outlive
/// its entry. Fails with 10004 if there is no event loop.
void RegisterSocket(Sockets::Handle handle, CSocket& socket);
/// Ends the events of a socket and removes it. Does nothing if it isn't registered.
void UnregisterSocket(Sockets::Handle handle);

// What is to be reported about a registered socket; see SocketWatch.
void ExpectConnect(Sockets::Handle handle);
void ExpectStream(Sockets::Handle handle);
void HoldStream(Sockets::Handle handle);
void ReleaseStream(Sockets::Handle handle);
void ExpectDatagrams(Sockets::Handle handle);
void ExpectRequests(Sockets::Handle handle);
void PauseRequests(Sockets::Handle handle);
void ExpectWrite(Sockets::Handle handle);
/// Brings the socket a write event out of the event loop, whatever the network does.
void PostWriteEvent(Sockets::Handle handle);

/// Starts the look-up of a host; its end is `PostGetHostEvent` of `socket`. The look-up's handle,
/// never 0. Fails if none can be started.
std::int32_t ResolveHost(const std::string& name, CSocket& socket);
/// Forgets the look-ups of an object that goes.
void ForgetLookUps(const CSocket& socket);

/// The text of an error number; "Unknown error." for one that isn't in the table.
std::string_view GetErrorDescription(int number);

}  // namespace MSocketSupport
