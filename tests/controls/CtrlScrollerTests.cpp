#include <QAccessible>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RenderedAt.h"
#include "controls/CtrlScroller.h"

namespace {

using ScrollerGeometry::HandleFromMouse;
using ScrollerGeometry::HandleFromValue;
using ScrollerGeometry::Scale;
using ScrollerGeometry::Track;
using ScrollerGeometry::ValueFromHandle;
using testing::ElementsAre;

// A handle of 10 by 20 whose left column is transparent.
QPixmap HandlePicture(const QColor& colour) {
  QImage picture(10, 20, QImage::Format_RGB32);
  picture.fill(colour);
  for (int y = 0; y < 20; ++y) picture.setPixelColor(0, y, QColor(255, 0, 255));
  return QPixmap::fromImage(picture);
}

// 110 by 20 pixels: the handle's way is 100, as is the scale.
struct Scroller : CtrlScroller {
  Scroller() {
    SetScrollBefore(PlainPicture({110, 20}, Qt::darkBlue));
    SetScrollAfter(PlainPicture({110, 20}, Qt::darkGreen));
    SetBar(HandlePicture(Qt::yellow));
    SetBarOver(HandlePicture(Qt::red));
    connect(this, &CtrlScroller::Change, [this] { Log("Change"); });
    connect(this, &CtrlScroller::Click, [this] { Log("Click"); });
  }
  void Press(int x) { QTest::mousePress(this, Qt::LeftButton, {}, {x, 10}); }
  void Move(int x) { QTest::mouseMove(this, {x, 10}); }
  void Release(int x) { QTest::mouseRelease(this, Qt::LeftButton, {}, {x, 10}); }

  template <typename... Parts>
  void Log(const Parts&... parts) {
    std::ostringstream text;
    ((text << parts << ' '), ...);
    log += text.str();
  }
  // What holds now, and was raised since this was last asked.
  void Expect(std::int32_t value, int place, const std::string& raised) {
    EXPECT_EQ(Value(), value);
    EXPECT_EQ(BarLeft(), place);
    EXPECT_EQ(std::exchange(log, {}), raised);
  }

  std::string log;
};

}  // namespace

TEST(ScrollerGeometry, TakesTheHandleFromTheMouse) {
  struct Row {
    Track track;
    double mouse;
    int handle;
  };
  const Row rows[] = {
      {{110, 10}, 55, 50},   {{110, 10}, 4, 0},      {{110, 10}, -900, 0},
      {{110, 10}, 106, 100}, {{110, 10}, 9000, 100}, {{110, 10}, 55.5, 51},  // 56, the even one
      {{100, 15}, 50, 42},   {{100, 15}, 51, 44},                            // 42.5 and 43.5
      {{100, 15}, 0, 0},     {{100, 15}, 1000, 85},  // an odd handle reaches both ends
      {{10, 20}, 5, 0},      {{0, 0}, 3, 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(HandleFromMouse(row.track, row.mouse), row.handle) << row.mouse;
  }
}

TEST(ScrollerGeometry, MapsHandleAndValue) {
  struct Row {
    Track track;
    Scale scale;
    int handle;
    std::int32_t value;
    bool limited;
    int back;  // the handle for that value
  };
  constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
  const Row rows[] = {
      {{110, 10}, {0, 100, 0, 100}, 37, 37, false, 37},
      {{14, 10}, {0, 10, 0, 10}, 1, 2, false, 1},  // 2.5 to even, and 0.8 back
      {{14, 10}, {0, 10, 0, 10}, 3, 8, false, 3},  // 7.5 to even
      {{110, 10}, {0, 1, 0, 1}, 50, 0, false, 0},
      {{110, 10}, {-50, 50, -50, 50}, 25, -25, false, 25},
      {{110, 10}, {0, 100, 20, 80}, 5, 20, true, 20},
      {{110, 10}, {0, 100, 20, 80}, 95, 80, true, 80},
      {{110, 10}, {0, 100, 20, 80}, 80, 80, false, 80},
      {{110, 10}, {kLow, kHigh, kLow, kHigh}, 100, kHigh, false, 100},
      {{110, 10}, {5, 5, 5, 5}, 60, 5, false, 0},  // a scale without length
      {{10, 10}, {3, 9, 3, 9}, 0, 3, false, 0},    // a way without length
  };
  for (const Row& row : rows) {
    const ScrollerGeometry::Reached reached = ValueFromHandle(row.track, row.scale, row.handle);
    EXPECT_EQ(reached.Value, row.value) << row.handle;
    EXPECT_EQ(reached.Limited, row.limited) << row.handle;
    EXPECT_EQ(HandleFromValue(row.track, row.scale, reached.Value), row.back) << row.handle;
  }
}

// `RMin` and `RMax` bind the mouse alone. The handle stays when `Max` and `Min` change.
TEST(CtrlScroller, SetsItsScaleByTheirRules) {
  Scroller scroller;
  scroller.SetRMax(90);
  scroller.SetRMin(10);
  using Set = void (CtrlScroller::*)(std::int32_t);
  struct Row {
    Set set;
    std::int32_t number, min, rMin, value, rMax;
    int place;
  };
  for (const Row& row : {
           Row{&CtrlScroller::SetValue, 500, 0, 10, 100, 90, 100},
           Row{&CtrlScroller::SetMax, 40, 0, 10, 40, 40, 100},
           Row{&CtrlScroller::SetValue, 20, 0, 10, 20, 40, 50},
           Row{&CtrlScroller::SetMin, 30, 20, 20, 20, 40, 50},  // cut down to the value
           Row{&CtrlScroller::SetValue, -7, 20, 20, 20, 40, 0},
       }) {
    SCOPED_TRACE(row.number);
    (scroller.*row.set)(row.number);
    EXPECT_EQ(scroller.Min(), row.min);
    EXPECT_EQ(scroller.RMin(), row.rMin);
    EXPECT_EQ(scroller.Value(), row.value);
    EXPECT_EQ(scroller.RMax(), row.rMax);
    EXPECT_EQ(scroller.BarLeft(), row.place);
  }
  EXPECT_EQ(scroller.log, "") << "only the mouse raises Change";
}

TEST(CtrlScroller, FollowsTheMouse) {
  Scroller scroller;
  scroller.Press(55);
  scroller.Expect(50, 50, "Change Change ");
  scroller.Release(55);
  scroller.Expect(50, 50, "Click ");
  scroller.Press(55);
  scroller.Move(800);
  scroller.Expect(100, 100, "Change Change Change Change ");
  scroller.Move(-800);
  scroller.Expect(0, 0, "Change Change ");
  scroller.Release(-800);
  scroller.Move(55);
  QTest::mouseClick(&scroller, Qt::RightButton, {}, {55, 10});
  scroller.Expect(0, 0, "Click ");

  scroller.SetEnabled(false);  // only looks pressed
  scroller.Press(55);
  EXPECT_EQ(RenderedAt(scroller, 1).pixelColor(5, 5), QColor(Qt::red));
  scroller.Release(55);
  EXPECT_EQ(RenderedAt(scroller, 1).pixelColor(5, 5), QColor(Qt::yellow));
  scroller.Expect(0, 0, "Click ");
}

TEST(CtrlScroller, StopsTheValueWithinTheMousesReachAndSnaps) {
  for (const bool snap : {false, true}) {
    Scroller scroller;
    scroller.SetSnap(snap);
    scroller.SetRMin(20);
    scroller.SetRMax(80);
    scroller.Press(15);
    scroller.Expect(20, snap ? 20 : 10, "Change ");  // once where the value is stopped
    scroller.Move(300);
    scroller.Expect(80, snap ? 80 : 100, "Change ");
    scroller.Release(300);
    scroller.SetMax(4);
    std::vector<int> places;
    QObject::connect(&scroller, &CtrlScroller::Change,
                     [&] { places.push_back(scroller.BarLeft()); });
    scroller.SetRMin(0);
    scroller.Press(65);
    scroller.Release(65);
    EXPECT_THAT(places, ElementsAre(60, snap ? 50 : 60));
  }
}

TEST(CtrlScroller, RunsFromTopToBottomToo) {
  Scroller scroller;
  scroller.SetVertical(true);
  scroller.SetScrollBefore(PlainPicture({10, 120}, Qt::darkBlue));
  scroller.SetScrollAfter(PlainPicture({10, 120}, Qt::darkGreen));
  EXPECT_EQ(scroller.size(), QSize(10, 120));
  QTest::mousePress(&scroller, Qt::LeftButton, {}, {5, 40});
  EXPECT_EQ(scroller.BarTop(), 30);
  scroller.Expect(30, 0, "Change ");
  const QImage image = RenderedAt(scroller, 1);
  EXPECT_EQ(image.pixelColor(0, 39), QColor(Qt::darkBlue));
  EXPECT_EQ(image.pixelColor(0, 40), QColor(Qt::darkGreen));
  EXPECT_EQ(image.pixelColor(5, 40), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(5, 50), QColor(Qt::darkGreen));
  scroller.Release(5);
}

TEST(CtrlScroller, PassesOnKeysAndDrops) {
  Scroller scroller;
  QObject::connect(&scroller, &CtrlScroller::KeyDown,
                   [&](int key, int shift) { scroller.Log("Key", key, shift); });
  QTest::keyClick(&scroller, Qt::Key_Left, Qt::ShiftModifier);
  QTest::keyClick(&scroller, Qt::Key_A);
  scroller.Expect(0, 0, "Key 16 1 Key 37 1 Key 65 0 ");

  QMimeData data;
  data.setText("drop");
  const auto enter = [&] {
    QDragEnterEvent event({3, 4}, Qt::CopyAction, &data, Qt::LeftButton, {});
    event.ignore();
    QCoreApplication::sendEvent(&scroller, &event);
    return event.isAccepted();
  };
  EXPECT_FALSE(enter()) << "nobody listens";
  QObject::connect(
      &scroller, &CtrlScroller::OLEDragDrop,
      [&](const QMimeData* what, std::int32_t& effect, int button, int shift, float x, float y) {
        scroller.Log(what->text().toStdString(), effect, button, shift, x, y);
        effect = 0;
      });
  EXPECT_TRUE(enter());
  QDropEvent drop(QPointF(3, 4), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                  Qt::ControlModifier);
  QCoreApplication::sendEvent(&scroller, &drop);
  scroller.Expect(0, 0, "drop 1 1 2 3 4 ");
  EXPECT_FALSE(drop.isAccepted()) << "the handler has refused";
}

TEST(CtrlScroller, IsASliderToScreenReaders) {
  Scroller scroller;
  scroller.SetRMax(80);
  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&scroller);
  ASSERT_NE(interface, nullptr);
  EXPECT_EQ(interface->role(), QAccessible::Slider);
  QAccessibleValueInterface* const value = interface->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->maximumValue().toInt(), 100);
  value->setCurrentValue(95);
  EXPECT_EQ(value->currentValue().toInt(), 80) << "no further than the mouse";
  scroller.Expect(80, 80, "Change ");
  scroller.SetEnabled(false);
  EXPECT_TRUE(interface->state().disabled);
  value->setCurrentValue(5);
  scroller.Expect(80, 80, "");
}
