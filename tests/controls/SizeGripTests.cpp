#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include "RenderedAt.h"
#include "controls/SizeGrip.h"
#include "platform/window/basMinMax.h"

namespace {

const QColor kBack(159, 165, 181);
const QColor kLine(221, 223, 230);

// A style whose scroll bars can change their size.
class ScrollBarStyle : public QProxyStyle {
 public:
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    return metric == PM_ScrollBarExtent ? Extent : QProxyStyle::pixelMetric(metric, option, widget);
  }
  int Extent = 16;
};

// A window of 300 by 200 with a grip.
struct Form : QWidget {
  Form() : QWidget(nullptr, Qt::FramelessWindowHint), grip(this) {
    grip.setStyle(&style);
    resize(300, 200);
  }
  void Show() {
    show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(this));
  }
  [[nodiscard]] QRect Corner(int side) const {
    return {width() - side, height() - side, side, side};
  }

  ScrollBarStyle style;
  SizeGrip grip;
  QSignalSpy changes{&grip, &SizeGrip::ScrollbarSizeChanged};
};

}  // namespace

TEST(SizeGrip, StaysInItsCorner) {
  Form form;
  form.Show();
  EXPECT_EQ(form.grip.geometry(), QRect(284, 184, 16, 16));
  form.resize(411, 333);
  EXPECT_EQ(form.grip.geometry(), form.Corner(16));
  form.grip.setGeometry(3, 4, 50, 60);
  EXPECT_EQ(form.grip.geometry(), form.Corner(16));
}

TEST(SizeGrip, TellsAChangedScrollBarOnce) {
  Form form;
  form.Show();
  ASSERT_EQ(form.changes.size(), 1) << "the first time counts";
  EXPECT_EQ(form.changes.takeFirst(), QVariantList({16, 16}));
  form.resize(310, 210);
  EXPECT_EQ(form.changes.size(), 0);
  form.style.Extent = 20;
  form.resize(320, 220);
  form.resize(330, 230);
  ASSERT_EQ(form.changes.size(), 1);
  EXPECT_EQ(form.changes.takeFirst(), QVariantList({20, 20}));
  EXPECT_EQ(form.grip.geometry(), form.Corner(20));
  EXPECT_EQ(form.grip.VScrollWidth(), 20);
}

TEST(SizeGrip, GoesBehindItsSiblings) {
  Form form;
  QWidget sibling(&form);
  form.Show();
  const auto isBehind = [&] {
    return form.children().indexOf(&form.grip) < form.children().indexOf(&sibling);
  };
  form.grip.raise();
  EXPECT_TRUE(isBehind());
  form.grip.SetAutoZOrder(false);
  form.grip.raise();
  form.resize(310, 210);
  EXPECT_FALSE(isBehind());
  EXPECT_EQ(form.grip.geometry(), form.Corner(16));
}

// The offscreen platform has no size drag of its own, so the grip's runs.
TEST(SizeGrip, DragsTheWindowWithinItsMinimum) {
  Form form;
  basMinMax::HookMinMax(&form, 200, 150);
  form.Show();
  QSignalSpy moves(&form.grip, &SizeGrip::MouseMove);
  QSignalSpy releases(&form.grip, &SizeGrip::MouseUp);
  // Places count from the grip, which moves along.
  QTest::mousePress(&form.grip, Qt::LeftButton, {}, {8, 8});
  QTest::mouseMove(&form.grip, {38, 18});
  EXPECT_EQ(form.size(), QSize(330, 210));
  QTest::mouseMove(&form.grip, {-2000, -2000});
  EXPECT_EQ(form.size(), QSize(200, 150));
  EXPECT_EQ(form.grip.geometry(), form.Corner(16));
  QTest::mouseMove(&form.grip, {8 + 50, 8 + 10});
  EXPECT_EQ(form.size(), QSize(250, 160)) << "the corner is under the mouse again";
  QTest::mouseRelease(&form.grip, Qt::LeftButton, {}, {8, 8});
  EXPECT_EQ(moves.size() + releases.size(), 0) << "the drag has them";
  QTest::mouseRelease(&form.grip, Qt::RightButton, {}, {8, 8});
  EXPECT_EQ(releases.size(), 1);
}

TEST(SizeGrip, LeavesTheRightButtonAlone) {
  Form form;
  form.Show();
  QSignalSpy presses(&form.grip, &SizeGrip::MouseDown);
  QSignalSpy moves(&form.grip, &SizeGrip::MouseMove);
  QTest::mousePress(&form.grip, Qt::RightButton, {}, {8, 8});
  QTest::mouseMove(&form.grip, {38, 18});
  QTest::mouseRelease(&form.grip, Qt::RightButton, {}, {8, 8});
  EXPECT_EQ(form.size(), QSize(300, 200));
  EXPECT_EQ(presses.size(), 0);
  ASSERT_EQ(moves.size(), 1);
  EXPECT_EQ(moves.takeFirst(), QVariantList({short{2}, short{0}, 38.0F, 18.0F}));
}

TEST(SizeGrip, OnlyTellsTheMouseElsewhere) {
  QMainWindow documents;
  documents.setCentralWidget(new QMdiArea);
  QWidget window;
  QWidget container(&window);
  for (QWidget* const parent : {static_cast<QWidget*>(&documents), &container}) {
    SizeGrip grip(parent);
    grip.move(5, 6);
    parent->window()->resize(300, 200);
    parent->resize(300, 200);
    parent->window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(parent->window()));
    grip.show();
    EXPECT_EQ(grip.eForm(), nullptr);
    EXPECT_EQ(grip.pos(), QPoint(5, 6));
    EXPECT_EQ(grip.size(), QSize(grip.VScrollWidth(), grip.HScrollHeight()));
    QSignalSpy presses(&grip, &SizeGrip::MouseDown);
    QTest::mouseClick(&grip, Qt::LeftButton, Qt::ControlModifier, {2, 3});
    ASSERT_EQ(presses.size(), 1);
    EXPECT_EQ(presses.takeFirst(), QVariantList({short{1}, short{2}, 2.0F, 3.0F}));
  }
}

TEST(SizeGrip, DrawsThreeLinesInTwoColours) {
  Form form;
  form.Show();
  for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
    const QImage image = RenderedAt(form.grip, ratio);
    int changes = 0;  // of colour, along the diagonal from the upper left to the lower right
    for (int i = 0; i < image.width(); ++i) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, i);
        ASSERT_TRUE(colour == kBack || colour == kLine) << ratio;
        if (x + i < image.width()) {
          ASSERT_EQ(colour, kBack) << "a line in the upper left half";
        }
      }
      if (i > 0 && image.pixelColor(i, i) != image.pixelColor(i - 1, i - 1)) ++changes;
    }
    EXPECT_EQ(changes, 6) << ratio;
  }
  QPixmap picture(16, 16);
  picture.fill(Qt::green);
  form.grip.SetPicture(picture);
  EXPECT_EQ(RenderedAt(form.grip, 1).pixelColor(0, 0), QColor(Qt::green));
}
