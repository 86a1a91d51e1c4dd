#include "platform/window/hWndByMouse.h"

#include <QApplication>
#include <QCursor>
#include <QWidget>

QWidget* hWndByMouse() {
  return QApplication::widgetAt(QCursor::pos());
}
