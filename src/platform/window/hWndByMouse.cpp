#include "platform/window/hWndByMouse.h"

#include <QApplication>
#include <QCursor>
#include <QWidget>

#include "platform/window/PointerWatch.h"

namespace {

// Wayland tells no window where it stands, so that all believe to be at (0, 0), and the cursor's
// place over our windows only.
bool KnowsNoPlaces() {
  static const bool isWayland = QGuiApplication::platformName().startsWith("wayland");
  return isWayland;
}

}  // namespace

QWidget* hWndByMouse() {
  if (KnowsNoPlaces()) {
    static const PointerWatch watch;
    return watch.Widget();
  }
  return QApplication::widgetAt(QCursor::pos());
}
