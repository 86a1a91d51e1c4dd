#include "platform/window/hWndByMouse.h"

#include <QApplication>
#include <QCursor>
#include <QWidget>

#include "platform/window/PointerWatch.h"

namespace {

// Wayland tells the cursor's place over our windows only; outside, the last one remains.
bool HasLeftAllWindows() {
  static const bool isWayland = QGuiApplication::platformName().startsWith("wayland");
  if (!isWayland) return false;
  static const PointerWatch watch;
  return !watch.IsInside();
}

}  // namespace

QWidget* hWndByMouse() {
  if (HasLeftAllWindows()) return nullptr;
  return QApplication::widgetAt(QCursor::pos());
}
