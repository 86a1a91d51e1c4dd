#pragma once

#include <QEvent>
#include <QObject>
#include <functional>

/// A call that waits in the event loop.
class PostedCall : public QEvent {
 public:
  explicit PostedCall(std::function<void()> call);

  void Run() const { call_(); }

 private:
  std::function<void()> call_;
};

/// Runs the calls that are posted to it, out of the event loop of its thread. Those that still wait
/// when it goes are dropped.
class CallReceiver : public QObject {
 public:
  using QObject::QObject;

 protected:
  void customEvent(QEvent* event) override;
};

/// Posts a call to `receiver`, from whatever thread.
void PostCall(CallReceiver& receiver, std::function<void()> call);
/// Posts a call to the application; it is dropped if the application ends first. From the
/// application's own thread.
void PostCall(std::function<void()> call);
