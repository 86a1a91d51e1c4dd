#include "controls/FocusFrame.h"

#include <QFocusEvent>
#include <QPainter>

#include "controls/Painting.h"

FocusFrame::FocusFrame(QWidget* control) : QFocusFrame(control) {
  hide();
  control->installEventFilter(this);
}

bool FocusFrame::IsByKeyboard(Qt::FocusReason reason, bool before) {
  const bool isAsBefore = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
                          reason == Qt::MenuBarFocusReason;
  return isAsBefore ? before : reason != Qt::MouseFocusReason;
}

bool FocusFrame::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
      byKeyboard_ = IsByKeyboard(static_cast<QFocusEvent*>(event)->reason(), byKeyboard_);
      ShowOnControl();
      break;
    case QEvent::FocusOut:
      hide();
      break;
    case QEvent::Resize:
      setGeometry(parentWidget()->rect());
      break;
    default:
      break;
  }
  return false;
}

void FocusFrame::ShowOnControl() {
  setGeometry(parentWidget()->rect());
  raise();
  setVisible(byKeyboard_ && parentWidget()->hasFocus());
}

void FocusFrame::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  Painting::DrawFocusRect(painter, rect());
}
