#pragma once

#include <QApplication>
#include <QCursor>
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
  Q_DISABLE_COPY_MOVE(Hand)

  void Open() {
    window.show();
    window.activateWindow();
    [[maybe_unused]] const bool isActive = QTest::qWaitForWindowActive(&window);
    QTest::keyRelease(&window, Qt::Key_Shift);  // no keys are held any more
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

  void DoubleClick() { QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, place_); }

  QWidget window;

 private:
  QPoint place_;
};
