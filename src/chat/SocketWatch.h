#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>

#include "platform/Sockets.h"

/// What the socket service reports about a socket; the numbers are those of its event masks.
enum SocketEvent : int {
  kReadEvent = 1,
  kWriteEvent = 2,
  kAcceptEvent = 8,
  kConnectEvent = 16,
  kCloseEvent = 32,
};

/// Turns the readiness of one socket, as the event loop tells it, into the events of the socket
/// service. It reports nothing but what has been asked for by one of the `Expect...`.
class SocketWatch {
 public:
  /// Takes an event and 0, or the error that came instead. May destroy the watch.
  using Report = std::function<void(int eventId, int error)>;

  /// `handle` must stay open for as long as the watch lives.
  SocketWatch(Sockets::Handle handle, Report report);
  ~SocketWatch();
  SocketWatch(const SocketWatch&) = delete;
  SocketWatch& operator=(const SocketWatch&) = delete;
  SocketWatch(SocketWatch&&) = delete;
  SocketWatch& operator=(SocketWatch&&) = delete;

  /// The end of a connect: one connect event, then one write event.
  void ExpectConnect();
  /// Bytes of a connection and its end: read and close events.
  void ExpectStream();
  /// No read and close events until `ReleaseStream`, which does nothing without a hold.
  void HoldStream();
  void ReleaseStream();
  /// Datagrams: read events.
  void ExpectDatagrams();
  /// Connections to a listening socket: accept events.
  void ExpectRequests();
  /// No accept events for a tenth of a second: connections that can't be taken, for want of
  /// handles for instance, keep the socket ready.
  void PauseRequests();
  /// One write event as soon as the socket takes bytes.
  void ExpectWrite();

 private:
  enum class Incoming { kNothing, kStream, kDatagrams, kRequests };

  void Expect(Incoming incoming);
  void Readable();
  void StreamReadable();
  void StreamReadableSoon();
  void Writable();

  Sockets::Handle handle_;
  Report report_;
  Incoming incoming_ = Incoming::kNothing;
  bool connecting_ = false;
  bool held_ = false;
  std::shared_ptr<char> life_ = std::make_shared<char>();  // expires with the watch
  QSocketNotifier* read_;
  QSocketNotifier* write_;
  QTimer pause_;  // of the accept events
};
