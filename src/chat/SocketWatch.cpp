#include "chat/SocketWatch.h"

#include <chrono>

#include "chat/PostedCall.h"

namespace {

QSocketNotifier* SleepingNotifier(Sockets::Handle handle, QSocketNotifier::Type type) {
  auto* const notifier = new QSocketNotifier(type);
  notifier->setEnabled(false);
  notifier->setSocket(handle);
  return notifier;
}

// A notifier may be on the stack right now: it falls silent at once, and goes later.
void Discard(QSocketNotifier* notifier) {
  notifier->setEnabled(false);
  notifier->disconnect();
  notifier->deleteLater();
}

}  // namespace

SocketWatch::SocketWatch(Sockets::Handle handle, Report report)
    : handle_(handle),
      report_(std::move(report)),
      read_(SleepingNotifier(handle, QSocketNotifier::Read)),
      write_(SleepingNotifier(handle, QSocketNotifier::Write)) {
  QObject::connect(read_, &QSocketNotifier::activated, read_, [this] { Readable(); });
  QObject::connect(write_, &QSocketNotifier::activated, write_, [this] { Writable(); });
  pause_.setSingleShot(true);
  QObject::connect(&pause_, &QTimer::timeout, read_, [this] { read_->setEnabled(true); });
}

SocketWatch::~SocketWatch() {
  Discard(read_);
  Discard(write_);
}

void SocketWatch::ExpectConnect() {
  connecting_ = true;
  write_->setEnabled(true);
}

void SocketWatch::ExpectStream() {
  Expect(Incoming::kStream);
}

void SocketWatch::HoldStream() {
  held_ = true;
  read_->setEnabled(false);
}

void SocketWatch::ReleaseStream() {
  if (!held_) return;
  held_ = false;
  read_->setEnabled(incoming_ != Incoming::kNothing);
  StreamReadableSoon();
}

void SocketWatch::ExpectDatagrams() {
  Expect(Incoming::kDatagrams);
}

void SocketWatch::ExpectRequests() {
  Expect(Incoming::kRequests);
}

// Not earlier than something can come: the system calls an idle socket readable, for ever.
void SocketWatch::Expect(Incoming incoming) {
  incoming_ = incoming;
  read_->setEnabled(true);
}

void SocketWatch::PauseRequests() {
  constexpr std::chrono::milliseconds kPause(100);
  read_->setEnabled(false);
  pause_.start(kPause);
}

void SocketWatch::ExpectWrite() {
  write_->setEnabled(true);
}

void SocketWatch::Readable() {
  const Report report = report_;  // outlives the watch
  switch (incoming_) {
    case Incoming::kNothing:
      break;
    case Incoming::kStream:
      StreamReadable();
      break;
    case Incoming::kDatagrams:
      report(kReadEvent, 0);
      break;
    case Incoming::kRequests:
      report(kAcceptEvent, 0);
      break;
  }
}

void SocketWatch::StreamReadable() {
  if (held_) return;
  const Report report = report_;
  const Sockets::Result pending = Sockets::Peek(handle_);
  if (pending.error == Sockets::kWouldBlock) return;
  if (pending.value <= 0) return report(kCloseEvent, pending.error);
  const std::weak_ptr<char> life = life_;
  report(kReadEvent, 0);
  if (life.expired() || held_) return;
  const Sockets::Result next = Sockets::Peek(handle_);
  // The system tells an error once, and this was it.
  if (next.error != 0 && next.error != Sockets::kWouldBlock) {
    return report(kCloseEvent, next.error);
  }
  if (next.value == 0) StreamReadableSoon();
}

// Not every system wakes us once more for an end that it has told together with the last bytes, or
// while nobody listened.
void SocketWatch::StreamReadableSoon() {
  PostCall([this, life = std::weak_ptr<char>(life_)] {
    if (!life.expired()) StreamReadable();
  });
}

void SocketWatch::Writable() {
  const Report report = report_;
  if (!connecting_) {
    write_->setEnabled(false);
    return report(kWriteEvent, 0);
  }
  connecting_ = false;
  const int error = Sockets::TakeError(handle_);
  if (error == 0 && incoming_ == Incoming::kNothing) ExpectStream();
  report(kConnectEvent, error);
}
