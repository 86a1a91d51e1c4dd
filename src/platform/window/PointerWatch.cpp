#include "platform/window/PointerWatch.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QSinglePointEvent>

PointerWatch::PointerWatch() {
  QCoreApplication::instance()->installEventFilter(this);
}

QWidget* PointerWatch::Widget() const {
  if (!hasHeard_) return QApplication::widgetAt(QCursor::pos());
  if (!window_) return nullptr;
  for (QWidget* const form : QApplication::topLevelWidgets()) {
    if (form->windowHandle() != window_ || !form->rect().contains(place_)) continue;
    QWidget* const child = form->childAt(place_);
    return child != nullptr ? child : form;
  }
  return nullptr;
}

// From one window to another the Leave comes before the Enter.
bool PointerWatch::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWindowType()) return false;  // the widgets in the windows have their own
  switch (event->type()) {
    case QEvent::Enter:
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
      hasHeard_ = true;
      window_ = static_cast<QWindow*>(watched);
      place_ = static_cast<QSinglePointEvent*>(event)->position().toPoint();
      break;
    case QEvent::Leave:
      hasHeard_ = true;
      window_ = nullptr;
      break;
    default:
      break;
  }
  return false;
}
