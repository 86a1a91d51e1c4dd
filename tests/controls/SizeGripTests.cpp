#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include "controls/SizeGrip.h"
#include "platform/window/basMinMax.h"

namespace {

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
  QSignalSpy moves{&grip, &SizeGrip::MouseMove};
  QSignalSpy releases{&grip, &SizeGrip::MouseUp};
};

}  // namespace

TEST(SizeGrip, StaysInItsCornerAndTellsAChangedScrollBarOnce) {
  Form form;
  form.Show();
  struct Row {
    int extent;
    QSize size;
    int tells;
  };
  for (const auto& [extent, size, tells] :
       {Row{16, {300, 200}, 1},  // the first time counts
        Row{16, {411, 333}, 0}, Row{20, {320, 220}, 1}, Row{20, {330, 230}, 0}}) {
    form.style.Extent = extent;
    form.resize(size);
    form.grip.setGeometry(3, 4, 50, 60);
    EXPECT_EQ(form.grip.geometry(), form.Corner(extent));
    EXPECT_EQ(form.changes.size(), tells);
    for (const QVariantList& told : form.changes) EXPECT_EQ(told, QVariantList({extent, extent}));
    form.changes.clear();
  }
}

TEST(SizeGrip, GoesBehindItsSiblings) {
  Form form;
  QWidget sibling(&form);
  form.Show();
  const auto isBehind = [&] {
    return form.children().indexOf(&form.grip) < form.children().indexOf(&sibling);
  };
  for (const bool automatic : {true, false}) {
    form.grip.SetAutoZOrder(automatic);
    form.grip.raise();
    EXPECT_EQ(isBehind(), automatic);
    form.resize(form.size() + QSize(10, 10));
    EXPECT_EQ(isBehind(), automatic);
  }
}

// The offscreen platform has no size drag of its own, so the window follows the mouse.
TEST(SizeGrip, DragsTheWindowWithinItsMinimum) {
  Form form;
  basMinMax::HookMinMax(&form, 200, 150);
  form.Show();
  QWindow* const window = form.windowHandle();
  QTest::mousePress(window, Qt::LeftButton, {}, {292, 192});
  form.moves.clear();  // the one to the press
  for (const auto& [mouse, size] : {std::pair(QPoint(322, 202), QSize(330, 210)),
                                    {QPoint(-1700, -1800), QSize(200, 150)},
                                    {QPoint(242, 152), QSize(250, 160)}}) {
    QTest::mouseMove(window, mouse);
    EXPECT_EQ(form.size(), size) << "the corner is under the mouse";
    EXPECT_EQ(form.grip.geometry(), form.Corner(16));
  }
  QTest::mouseRelease(window, Qt::LeftButton, {}, {242, 152});
  EXPECT_EQ(form.moves.size() + form.releases.size(), 0) << "the drag has them";

  QTest::mousePress(&form.grip, Qt::RightButton, {}, {8, 8});
  QTest::mouseMove(&form.grip, {38, 18});
  QTest::mouseRelease(&form.grip, Qt::RightButton, {}, {8, 8});
  EXPECT_EQ(form.size(), QSize(250, 160));
  ASSERT_EQ(form.moves.size(), 1);
  EXPECT_EQ(form.moves.takeFirst(), QVariantList({short{2}, short{0}, 38.0F, 18.0F}));
  EXPECT_EQ(form.releases.size(), 1);

  form.showMaximized();
  QCoreApplication::processEvents();
  const QSize whole = form.size();
  const QPoint corner = form.grip.geometry().center();
  QTest::mousePress(window, Qt::LeftButton, {}, corner);
  QTest::mouseMove(window, corner - QPoint(50, 50));
  QTest::mouseRelease(window, Qt::LeftButton, {}, corner - QPoint(50, 50));
  EXPECT_EQ(form.size(), whole);
}

TEST(SizeGrip, OnlyTellsTheMouseElsewhere) {
  QMainWindow documents;
  documents.setCentralWidget(new QMdiArea);
  QWidget window;
  QWidget container(&window);
  for (QWidget* const parent : {static_cast<QWidget*>(&documents), &container}) {
    SizeGrip grip(parent);
    grip.move(5, 6);
    parent->resize(300, 200);
    parent->window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(parent->window()));
    grip.show();
    EXPECT_EQ(grip.eForm(), nullptr);
    EXPECT_EQ(grip.geometry(), QRect(5, 6, grip.VScrollWidth(), grip.HScrollHeight()));
    QSignalSpy presses(&grip, &SizeGrip::MouseDown);
    QTest::mouseClick(&grip, Qt::LeftButton, Qt::ControlModifier, {2, 3});
    ASSERT_EQ(presses.size(), 1);
    EXPECT_EQ(presses.takeFirst(), QVariantList({short{1}, short{2}, 2.0F, 3.0F}));
  }
}
