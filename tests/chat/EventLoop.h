#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

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
