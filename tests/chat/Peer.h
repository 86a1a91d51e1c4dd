#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/Sockets.h"

/// Lets the event loop run until `isDone`; false if that takes longer than any test should.
template <typename Condition>
bool Until(Condition isDone) {
  constexpr int kPatience = 10'000;  // milliseconds
  constexpr int kTurn = 20;          // the longest sleep between two looks at the condition
  const QDeadlineTimer deadline(kPatience);
  while (!isDone()) {
    if (deadline.hasExpired()) return false;
    QEventLoop turn;
    QTimer::singleShot(kTurn, &turn, &QEventLoop::quit);
    turn.processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// Lets everything happen that is due.
inline void Settle() {
  constexpr int kTurns = 20;
  for (int i = 0; i < kTurns; ++i) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }
}

inline constexpr std::uint32_t kLoopback = 0x7F000001;

/// The other end of one connection, on the system's own sockets.
class Peer {
 public:
  explicit Peer(Sockets::Handle handle) : handle_(handle) {}
  ~Peer() { Close(); }
  Q_DISABLE_COPY(Peer)
  Peer(Peer&& other) noexcept : handle_(std::exchange(other.handle_, Sockets::kNone)) {}

  void Close() {
    if (handle_ != Sockets::kNone) Sockets::Close(std::exchange(handle_, Sockets::kNone));
  }
  [[nodiscard]] Sockets::Handle Handle() const { return handle_; }
  void ShutDownSending() const { EXPECT_EQ(Sockets::ShutDownSending(handle_), 0); }

  void Send(std::string_view bytes) const {
    ASSERT_TRUE(Until([&] {
      const Sockets::Result sent = Sockets::Send(handle_, bytes);
      if (sent.value > 0) bytes.remove_prefix(static_cast<std::size_t>(sent.value));
      return bytes.empty();
    }));
  }

  /// All that has come by now.
  std::string Received() {
    std::array<char, 65536> part{};
    for (;;) {
      const Sockets::Result read = Sockets::Receive(handle_, part.data(), part.size());
      isAtEnd_ = isAtEnd_ || read.value == 0;
      if (read.value <= 0) return received_;
      received_.append(part.data(), static_cast<std::size_t>(read.value));
    }
  }
  /// Waits for so many bytes.
  std::string Received(std::size_t count) {
    EXPECT_TRUE(Until([&] { return Received().size() >= count; }));
    return received_;
  }
  /// Waits for the end of the stream.
  std::string ReceivedInAll() {
    EXPECT_TRUE(Until([&] { return Received(), isAtEnd_; }));
    return received_;
  }
  void Forget() { received_.clear(); }

 private:
  Sockets::Handle handle_;
  std::string received_;
  bool isAtEnd_ = false;
};

/// A listening socket on a free port of this machine.
class Listener {
 public:
  explicit Listener(int backlog = 5) : handle_(Sockets::Open(Sockets::Kind::kStream).value) {
    EXPECT_EQ(Sockets::Bind(handle_, {kLoopback, 0}), 0);
    EXPECT_EQ(Sockets::Listen(handle_, backlog), 0);
  }
  ~Listener() { Sockets::Close(handle_); }
  Q_DISABLE_COPY_MOVE(Listener)

  [[nodiscard]] std::uint16_t Port() const {
    Sockets::Address address;
    EXPECT_EQ(Sockets::LocalAddress(handle_, address), 0);
    return address.port;
  }
  [[nodiscard]] Peer Take() const {
    Sockets::Result taken;
    EXPECT_TRUE(Until([&] { return (taken = Sockets::Accept(handle_)).value >= 0; }));
    return Peer(taken.value);
  }

 private:
  Sockets::Handle handle_;
};

/// A listening socket that has no room left: connects to it stay under way.
class FullListener {
 public:
  FullListener() {
    for (const Peer& other : others_) {
      EXPECT_EQ(Sockets::Connect(other.Handle(), {kLoopback, Port()}), Sockets::kWouldBlock);
    }
  }
  [[nodiscard]] std::uint16_t Port() const { return listener_.Port(); }

 private:
  static Peer Open() { return Peer(Sockets::Open(Sockets::Kind::kStream).value); }

  Listener listener_{0};
  std::array<Peer, 3> others_{Open(), Open(), Open()};
};

/// A port that nobody listens on.
inline std::uint16_t FreePort() {
  return Listener().Port();
}
