#include <QMouseEvent>
#include <QPointer>
#include <QProcess>
#include <QTest>
#include <QWindow>
#include <array>
#include <map>

#include "chat/window/frmHelp.h"
#include "controls/Fonts.h"
#include "controls/SizeGrip.h"
#include "controls/ngBtn.h"
#include "controls/skinBtn.h"
#include "platform/Failure.h"
#include "ui/WindowFixture.h"

namespace {

/// The main window under a Wayland compositor, and the pointer of the screen that it fills. A
/// window isn't told where it stands; that is learned from where the pointer comes in.
class WaylandWindow : public MainWindow {
 protected:
  // What the windows hear of the pointer.
  struct Listener : QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
      if (!watched->isWindowType()) return false;
      if (event->type() == QEvent::Leave) window = nullptr;
      if (event->type() == QEvent::Enter || event->type() == QEvent::MouseMove) {
        window = static_cast<QWindow*>(watched);
        place = static_cast<QSinglePointEvent*>(event)->position().toPoint();
      }
      return false;
    }
    QPointer<QWindow> window;
    QPoint place;  // in it
  };

  WaylandWindow() { qApp->installEventFilter(&pointer); }

  static void Hand(const QStringList& acts) {
    if (QProcess::execute("xdotool", acts) != 0) Fail("xdotool failed");
  }
  static void MoveTo(const QPoint& place) {
    Hand({"mousemove", QString::number(place.x()), QString::number(place.y())});
  }
  // Between the two screens an event may wait for the next one, so there is always a next one.
  template <typename Condition>
  static void WaitFor(const char* what, Condition condition) {
    for (std::size_t tries = 0; tries < kTries; ++tries) {
      if (QTest::qWaitFor(condition, kTryFor)) return;
      Hand({"mousemove_relative", "1", "0", "mousemove_relative", "--", "-1", "0"});
    }
    Fail("waited in vain for ", what);
  }

  void Point(const QWidget& form, const QPoint& place) {
    // Coming in isn't a move yet.
    for (const QPoint& step : {place - QPoint(2, 2), place}) {
      MoveTo(corners[&form] + step);
      WaitFor("the pointer to come",
              [&] { return pointer.window == form.windowHandle() && pointer.place == step; });
    }
  }
  void PointAt(const QWidget& control) {
    const QWidget& form = *control.window();
    Point(form, control.mapTo(&form, control.rect().center()));
  }
  // The compositor has the pointer to itself until the button is let go.
  void Drag(const QWidget& form, const QPoint& from, const QPoint& way) {
    Point(form, from);
    Hand({"mousedown", "1"});
    MoveTo(corners[&form] + from + QPoint(5, 5));  // more than a click's tremor
    WaitFor("the compositor to take the drag", [&] { return pointer.window == nullptr; });
    MoveTo(corners[&form] + from + way);
    Hand({"mouseup", "1"});
    WaitFor("the pointer to be back", [&] { return pointer.window != nullptr; });
  }
  void MoveTo(const QWidget& form, const QPoint& grip, const QPoint& corner) {
    const QPoint end = corner + grip;
    Drag(form, grip, corner - corners[&form]);
    // The system may count from where the mouse first moved.
    corners[&form] = end - pointer.place;
  }
  // A window of the chat's size or more covers one of these places, wherever it stands.
  void Find(const QWidget& form) {
    const std::array<QPoint, 2> places = {QPoint(450, 200), QPoint(650, 200)};
    for (std::size_t tries = 0; tries < kTries && !corners.contains(&form); ++tries) {
      const QPoint place = places.at(tries % 2);
      pointer.window = nullptr;
      MoveTo(place);
      const auto isOver = [&] { return pointer.window == form.windowHandle(); };
      if (QTest::qWaitFor(isOver, kTryFor)) corners[&form] = place - pointer.place;
    }
    if (!corners.contains(&form)) Fail("the window is nowhere");
  }

  void ExpectHover(frmMain& window) {
    PointAt(*window.cmdMinimize);
    WaitFor("a hot button", [&] { return window.cmdMinimize->LookOver(); });
    PointAt(*window.cmdOptions);
    WaitFor("a hot picture", [&] { return window.cmdOptions->State() == ngBtnState::kOverOff; });
    WaitFor("a button at rest", [&] { return window.cmdMinimize->LookNormal(); });
  }

  static constexpr std::size_t kTries = 100;
  static constexpr int kTryFor = 200;  // milliseconds

  Listener pointer;
  std::map<const QWidget*, QPoint> corners;  // of the windows, on the screen
};

TEST_F(WaylandWindow, HearsThePointerAfterDragsAndBesideTheChat) {
  WriteIniWithGame("Position=0,0,1000,420\r\n");
  frmMain& window = StartWithPack();
  WaitFor("the window", [&] { return window.isActiveWindow(); });
  Find(window);
  ExpectHover(window);
  MoveTo(window, {500, 40}, {35, 25});
  ExpectHover(window);
  Drag(window, window.SizeGrip1->geometry().center(), {-30, -10});
  WaitFor("the new size", [&] { return window.size() == QSize(970, 410); });
  ExpectHover(window);

  PointAt(*window.cmdHelp);
  Hand({"click", "1"});
  const frmHelp* chat = nullptr;
  WaitFor("the chat", [&] {
    chat = qobject_cast<const frmHelp*>(QApplication::activeWindow());
    return chat != nullptr;
  });
  Find(*chat);
  MoveTo(*chat, {250, 20}, {760, 10});
  // It believes to stand in the same corner as the main window, over this button.
  ASSERT_TRUE(chat->rect().contains(window.cmdOptions->mapTo(&window, QPoint(44, 15))));
  PointAt(*window.cmdOptions);
  Hand({"click", "1"});
  WaitFor("the options", [&] { return window.panel->picPanel->isVisible(); });
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const QApplication application(argc, argv);
  Fonts::Load();
  return RUN_ALL_TESTS();
}
