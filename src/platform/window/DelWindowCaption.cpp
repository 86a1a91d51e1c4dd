#include "platform/window/DelWindowCaption.h"

#include <QWidget>

void DelWindowCaption(QWidget* window) {
  const QRect geometry = window->geometry();
  const bool wasVisible = window->isVisible();
  window->setWindowFlag(Qt::FramelessWindowHint);  // hides a window that is on screen
  window->setGeometry(geometry);
  if (wasVisible) window->show();
}
