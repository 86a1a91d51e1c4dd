#pragma once

#include <QApplication>
#include <QCursor>
#include <QImage>
#include <QTest>
#include <QWidget>

/// A window on screen for the control under test, and a hand that moves the real cursor in it and
/// presses the real buttons.
class Hand {
 public:
  Hand() {
    window.resize(300, 200);
    window.move(100, 100);
  }

  ~Hand() {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
      if (QGuiApplication::mouseButtons().testFlag(button)) Release(button);
    }
    // Out of the window, so that the next one doesn't open under the cursor.
    QCursor::setPos(0, 0);
    QApplication::processEvents();
  }
  Hand(const Hand&) = delete;
  Hand& operator=(const Hand&) = delete;
  Hand(Hand&&) = delete;
  Hand& operator=(Hand&&) = delete;

  void Open() {
    window.show();
    window.activateWindow();
    [[maybe_unused]] const bool isActive = QTest::qWaitForWindowActive(&window);
    MoveTo({5, 5});
  }

  void MoveTo(QPoint place) {
    place_ = place;
    QCursor::setPos(window.mapToGlobal(place));
    QApplication::processEvents();
  }
  void Press(Qt::MouseButton button, Qt::KeyboardModifiers keys = {}) {
    QTest::mousePress(window.windowHandle(), button, keys, place_);
  }
  void Release(Qt::MouseButton button, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseRelease(window.windowHandle(), button, keys, place_);
  }
  void Click(Qt::MouseButton button = Qt::LeftButton) {
    Press(button);
    Release(button);
  }

  QWidget window;

 private:
  QPoint place_;
};

/// What a widget paints at a scale factor.
inline QImage Painted(QWidget& widget, double scale = 1.0) {
  QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::magenta);
  widget.render(&image);
  return image;
}
