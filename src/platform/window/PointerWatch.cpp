#include "platform/window/PointerWatch.h"

#include <QCoreApplication>
#include <QEvent>

PointerWatch::PointerWatch() {
  QCoreApplication::instance()->installEventFilter(this);
}

// From one window to another the Leave comes before the Enter.
bool PointerWatch::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWindowType()) return false;  // the widgets in the windows have their own
  if (event->type() == QEvent::Enter) isInside_ = true;
  if (event->type() == QEvent::Leave) isInside_ = false;
  return false;
}
