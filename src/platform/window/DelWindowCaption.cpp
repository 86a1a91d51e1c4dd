#include "platform/window/DelWindowCaption.h"

#include <QWidget>
#include <QWindow>

// QWidget::setWindowFlag would hide a window that is on screen and make it anew, and the focus
// would be elsewhere. The window system is told to change the window it has.
void DelWindowCaption(QWidget* window) {
  const QRect whole = window->frameGeometry();
  const bool hasFrame = window->isWindow() && whole != window->geometry();
  window->overrideWindowFlags(window->windowFlags() | Qt::FramelessWindowHint);
  if (QWindow* const handle = window->windowHandle()) {
    handle->setFlag(Qt::FramelessWindowHint);
    const bool isNormal = (window->windowState() & ~Qt::WindowActive) == Qt::WindowNoState;
    if (hasFrame && isNormal) window->setGeometry(whole);
  }
}
