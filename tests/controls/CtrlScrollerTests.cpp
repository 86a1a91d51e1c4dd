#include <QAccessible>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
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

QPixmap Plain(QSize size, const QColor& colour) {
  QPixmap picture(size);
  picture.fill(colour);
  return picture;
}

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
    SetScrollBefore(Plain({110, 20}, Qt::darkBlue));
    SetScrollAfter(Plain({110, 20}, Qt::darkGreen));
    SetBar(HandlePicture(Qt::yellow));
    SetBarOver(HandlePicture(Qt::red));
    connect(this, &CtrlScroller::Change, [this] { log.emplace_back("Change"); });
    connect(this, &CtrlScroller::Click, [this] { log.emplace_back("Click"); });
  }
  void Press(int x) { QTest::mousePress(this, Qt::LeftButton, {}, {x, 10}); }
  void Move(int x) { QTest::mouseMove(this, {x, 10}); }
  void Release(int x) { QTest::mouseRelease(this, Qt::LeftButton, {}, {x, 10}); }

  std::vector<std::string> log;
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

TEST(CtrlScroller, StartsWithItsDefaults) {
  const CtrlScroller scroller;
  EXPECT_EQ(scroller.Max(), 100);
  EXPECT_EQ(scroller.RMax(), 100);
  EXPECT_EQ(scroller.RMin(), 0);
  EXPECT_EQ(scroller.Min(), 0);
  EXPECT_EQ(scroller.Value(), 0);
  EXPECT_TRUE(scroller.Enabled());
  EXPECT_FALSE(scroller.Vertical());
  EXPECT_FALSE(scroller.Snap());
  for (const char* const name : {"Code", "ProcedureClick", "ProcedureMouseMove",
                                 "ProcedureMouseDown", "ProcedureMouseUp", "Action"}) {
    EXPECT_EQ(scroller.property(name), QVariant(QString())) << name;
  }
}

TEST(CtrlScroller, SetsItsScaleByTheirRules) {
  Scroller scroller;
  scroller.SetValue(500);
  EXPECT_EQ(scroller.Value(), 100);
  EXPECT_EQ(scroller.BarLeft(), 100);
  scroller.SetRMax(90);
  scroller.SetRMin(10);
  EXPECT_EQ(scroller.Value(), 100) << "RMin and RMax bind the mouse alone";
  scroller.SetMax(40);
  EXPECT_EQ(scroller.Value(), 40);
  EXPECT_EQ(scroller.RMax(), 40);
  EXPECT_EQ(scroller.BarLeft(), 100) << "the handle stays";
  EXPECT_EQ(scroller.RMin(), 10);
  scroller.SetValue(20);
  EXPECT_EQ(scroller.BarLeft(), 50);
  scroller.SetMin(30);  // cut down to the value
  EXPECT_EQ(scroller.Min(), 20);
  EXPECT_EQ(scroller.RMin(), 20);
  EXPECT_EQ(scroller.BarLeft(), 50);
  scroller.SetValue(-7);
  EXPECT_EQ(scroller.Value(), 20);
  EXPECT_THAT(scroller.log, ElementsAre()) << "only the mouse raises Change";
}

TEST(CtrlScroller, FollowsTheMouse) {
  Scroller scroller;
  scroller.Press(55);
  EXPECT_EQ(scroller.Value(), 50);
  EXPECT_EQ(scroller.BarLeft(), 50);
  EXPECT_THAT(scroller.log, ElementsAre("Change", "Change"));
  scroller.Release(55);
  EXPECT_THAT(scroller.log, ElementsAre("Change", "Change", "Click"));
  scroller.Press(55);
  scroller.Move(800);
  EXPECT_EQ(scroller.Value(), 100);
  EXPECT_EQ(scroller.BarLeft(), 100);
  scroller.Move(-800);
  EXPECT_EQ(scroller.Value(), 0);
  EXPECT_EQ(scroller.BarLeft(), 0);
  scroller.Release(-800);
  scroller.Move(55);
  QTest::mouseClick(&scroller, Qt::RightButton, {}, {55, 10});
  EXPECT_EQ(scroller.Value(), 0);
}

TEST(CtrlScroller, StopsTheValueWithinTheMousesReach) {
  for (const bool snap : {false, true}) {
    Scroller scroller;
    scroller.SetSnap(snap);
    scroller.SetRMin(20);
    scroller.SetRMax(80);
    scroller.Press(15);
    EXPECT_EQ(scroller.Value(), 20);
    EXPECT_EQ(scroller.BarLeft(), snap ? 20 : 10);
    EXPECT_THAT(scroller.log, ElementsAre("Change")) << "once where the value is stopped";
    scroller.Move(300);
    EXPECT_EQ(scroller.Value(), 80);
    EXPECT_EQ(scroller.BarLeft(), snap ? 80 : 100);
    scroller.Release(300);
  }
}

TEST(CtrlScroller, SnapsToTheValueAfterTheFirstChange) {
  Scroller scroller;
  scroller.SetMax(4);
  scroller.SetSnap(true);
  std::vector<int> places;
  QObject::connect(&scroller, &CtrlScroller::Change, [&] { places.push_back(scroller.BarLeft()); });
  scroller.Press(65);
  EXPECT_EQ(scroller.Value(), 2);
  EXPECT_THAT(places, ElementsAre(60, 50));
}

TEST(CtrlScroller, RunsFromTopToBottomToo) {
  Scroller scroller;
  scroller.SetVertical(true);
  scroller.SetScrollBefore(Plain({10, 120}, Qt::darkBlue));
  scroller.SetScrollAfter(Plain({10, 120}, Qt::darkGreen));
  EXPECT_EQ(scroller.size(), QSize(10, 120));
  QTest::mousePress(&scroller, Qt::LeftButton, {}, {5, 40});
  EXPECT_EQ(scroller.Value(), 30);
  EXPECT_EQ(scroller.BarTop(), 30);
  EXPECT_EQ(scroller.BarLeft(), 0);
  EXPECT_THAT(scroller.log, ElementsAre("Change"));
  const QImage image = RenderedAt(scroller, 1);
  EXPECT_EQ(image.pixelColor(0, 39), QColor(Qt::darkBlue));
  EXPECT_EQ(image.pixelColor(0, 40), QColor(Qt::darkGreen));
  EXPECT_EQ(image.pixelColor(5, 40), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(5, 50), QColor(Qt::darkGreen));
}

TEST(CtrlScroller, OnlyLooksPressedWhileItIsNotEnabled) {
  Scroller scroller;
  scroller.SetEnabled(false);
  scroller.Press(55);
  EXPECT_EQ(scroller.Value(), 0);
  EXPECT_EQ(RenderedAt(scroller, 1).pixelColor(5, 5), QColor(Qt::red));
  scroller.Release(55);
  EXPECT_EQ(RenderedAt(scroller, 1).pixelColor(5, 5), QColor(Qt::yellow));
  EXPECT_THAT(scroller.log, ElementsAre("Click"));
}

TEST(CtrlScroller, DrawsItsPicturesAtAnyScale) {
  Scroller scroller;
  scroller.SetValue(40);
  scroller.resize(300, 300);
  EXPECT_EQ(scroller.size(), QSize(110, 20)) << "the picture's";
  for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
    const QImage image = RenderedAt(scroller, ratio);
    const auto at = [&](double x) { return image.pixelColor(qRound(x * ratio), 5); };
    EXPECT_EQ(at(0), QColor(Qt::darkBlue)) << ratio;
    EXPECT_EQ(at(40), QColor(Qt::darkBlue)) << "transparent in the handle";
    EXPECT_EQ(at(44), QColor(Qt::yellow)) << ratio;
    EXPECT_EQ(at(48), QColor(Qt::yellow)) << ratio;
    EXPECT_EQ(at(52), QColor(Qt::darkGreen)) << ratio;
    EXPECT_EQ(at(109), QColor(Qt::darkGreen)) << ratio;
  }
  QPixmap fine = Plain({220, 40}, Qt::darkBlue);
  fine.setDevicePixelRatio(2);
  scroller.SetScrollBefore(fine);
  EXPECT_EQ(scroller.size(), QSize(110, 20));
}

TEST(CtrlScroller, PassesOnKeysAndDrops) {
  Scroller scroller;
  std::vector<std::pair<int, int>> keys;
  QObject::connect(&scroller, &CtrlScroller::KeyDown,
                   [&](int key, int shift) { keys.emplace_back(key, shift); });
  QTest::keyClick(&scroller, Qt::Key_Left, Qt::ShiftModifier);
  QTest::keyClick(&scroller, Qt::Key_A);
  EXPECT_THAT(keys, ElementsAre(std::pair(16, 1), std::pair(37, 1), std::pair(65, 0)));

  QMimeData data;
  data.setText("drop");
  const auto enter = [&] {
    QDragEnterEvent event({3, 4}, Qt::CopyAction, &data, Qt::LeftButton, {});
    event.ignore();
    QCoreApplication::sendEvent(&scroller, &event);
    return event.isAccepted();
  };
  EXPECT_FALSE(enter()) << "nobody listens";
  QString dropped;
  QObject::connect(
      &scroller, &CtrlScroller::OLEDragDrop,
      [&](const QMimeData* what, std::int32_t& effect, int button, int shift, float x, float y) {
        dropped = QString("%1 %2 %3 %4 %5 %6")
                      .arg(what->text())
                      .arg(effect)
                      .arg(button)
                      .arg(shift)
                      .arg(double{x})
                      .arg(double{y});
        effect = 0;
      });
  EXPECT_TRUE(enter());
  QDropEvent drop(QPointF(3, 4), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                  Qt::ControlModifier);
  QCoreApplication::sendEvent(&scroller, &drop);
  EXPECT_EQ(dropped.toStdString(), "drop 1 1 2 3 4");
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
  EXPECT_EQ(scroller.BarLeft(), 80);
  EXPECT_THAT(scroller.log, ElementsAre("Change"));
  scroller.SetEnabled(false);
  EXPECT_TRUE(interface->state().disabled);
  value->setCurrentValue(5);
  EXPECT_EQ(scroller.Value(), 80);
}
