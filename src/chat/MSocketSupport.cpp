#include "chat/MSocketSupport.h"

#include <QAbstractEventDispatcher>
#include <array>
#include <map>
#include <memory>

#include "chat/CSocket.h"
#include "chat/HostLookUp.h"
#include "chat/PostedCall.h"
#include "chat/SocketError.h"
#include "chat/SocketWatch.h"
#include "core/basDebugLog.h"

namespace MSocketSupport {
namespace {

struct Entry {
  CSocket* socket;       // not owned
  std::uint64_t number;  // of this entry: the system gives the same handle again and again
  std::unique_ptr<SocketWatch> watch;
};

struct Module {
  bool ServiceStarted = false;
  std::int32_t ServiceMaxDatagram = 0;
  std::map<Sockets::Handle, Entry> SocketRegistry;
  std::map<std::int32_t, CSocket*> ResolveRegistry;  // by look-up handle; not owned
  std::uint64_t lastEntry = 0;
  std::int32_t lastLookUp = 0;
};

Module& TheModule() {
  static Module module;
  return module;
}

struct StartError {
  int number;
  std::string_view text;
};

constexpr std::array kStartErrors = std::to_array<StartError>({
    {10022,
     "The Windows Sockets version specified by the application is not supported by this DLL."},
    {10091, "The underlying network subsystem is not ready for network communication."},
    {10092,
     "The version of Windows Sockets API support requested is not provided by this particular "
     "Windows Sockets implementation."},
});

[[noreturn]] void FailStart(int number) {
  constexpr std::string_view kSource = "MSocketSupport.InitWinsockService";
  for (const StartError& row : kStartErrors) {
    if (row.number != number) continue;
    throw SocketError(number, std::string(kSource), std::string(row.text));
  }
  FailSocket(number, kSource);
}

Entry* Find(Sockets::Handle handle) {
  auto& registry = TheModule().SocketRegistry;
  const auto entry = registry.find(handle);
  return entry == registry.end() ? nullptr : &entry->second;
}

// The end of every event's road. A failure ends the handling of this event without a report.
void SocketWindowProc(Sockets::Handle handle, std::uint64_t number, int eventId, int error) {
  const Entry* const entry = Find(handle);
  if (entry == nullptr || entry->number != number) return;
  CSocket& socket = *entry->socket;
  Trapped("MSocketSupport.SocketWindowProc", [&] { socket.PostSocketEvent(eventId, error); });
}

void LookUpEnded(std::int32_t lookUp, const Sockets::Host& host) {
  const auto node = TheModule().ResolveRegistry.extract(lookUp);
  if (node.empty()) return;  // whoever asked is gone
  CSocket& socket = *node.mapped();
  Trapped("MSocketSupport.SocketWindowProc", [&] {
    if (host.error > 0) {
      socket.PostGetHostEvent(0, 0, "", host.error);
    } else {
      socket.PostGetHostEvent(lookUp, host.ip, host.name, 0);
    }
  });
}

template <typename Wish>
void Expect(Sockets::Handle handle, Wish wish) {
  if (const Entry* const entry = Find(handle)) (entry->watch.get()->*wish)();
}

}  // namespace

std::int32_t InitWinsockService() {
  Module& module = TheModule();
  if (module.ServiceStarted) return module.ServiceMaxDatagram;
  const Sockets::Result service = Sockets::Start();
  if (service.error != 0) FailStart(service.error);
  module.ServiceStarted = true;
  module.ServiceMaxDatagram = service.value;
  return module.ServiceMaxDatagram;
}

void StopIdleService() {
  Module& module = TheModule();
  if (!module.ServiceStarted || !module.SocketRegistry.empty()) return;
  Sockets::Stop();
  module.ServiceStarted = false;
}

bool ServiceStarted() {
  return TheModule().ServiceStarted;
}

void RegisterSocket(Sockets::Handle handle, CSocket& socket) {
  if (QAbstractEventDispatcher::instance() == nullptr) {
    throw SocketError(Sockets::kInterrupted, "MSocketSupport.RegisterSocket",
                      "The operation was canceled.");
  }
  Module& module = TheModule();
  const std::uint64_t number = ++module.lastEntry;
  auto watch = std::make_unique<SocketWatch>(handle, [handle, number](int eventId, int error) {
    SocketWindowProc(handle, number, eventId, error);
  });
  module.SocketRegistry.insert_or_assign(handle, Entry{&socket, number, std::move(watch)});
}

void UnregisterSocket(Sockets::Handle handle) {
  TheModule().SocketRegistry.erase(handle);
}

void ExpectConnect(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::ExpectConnect);
}

void ExpectStream(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::ExpectStream);
}

void HoldStream(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::HoldStream);
}

void ReleaseStream(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::ReleaseStream);
}

void ExpectDatagrams(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::ExpectDatagrams);
}

void ExpectRequests(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::ExpectRequests);
}

void PauseRequests(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::PauseRequests);
}

void ExpectWrite(Sockets::Handle handle) {
  Expect(handle, &SocketWatch::ExpectWrite);
}

void PostWriteEvent(Sockets::Handle handle) {
  const Entry* const entry = Find(handle);
  if (entry == nullptr) return;
  PostCall([handle, number = entry->number] { SocketWindowProc(handle, number, kWriteEvent, 0); });
}

std::int32_t ResolveHost(const std::string& name, CSocket& socket) {
  Module& module = TheModule();
  const std::int32_t lookUp = ++module.lastLookUp;
  const auto ended = [lookUp](const Sockets::Host& host) { LookUpEnded(lookUp, host); };
  if (!HostLookUp::Start(name, ended)) {
    FailSocket(Sockets::kNoBufferSpace, "MSocketSupport.ResolveHost");
  }
  module.ResolveRegistry.emplace(lookUp, &socket);
  return lookUp;
}

void ForgetLookUps(const CSocket& socket) {
  std::erase_if(TheModule().ResolveRegistry,
                [&](const auto& entry) { return entry.second == &socket; });
}

}  // namespace MSocketSupport
