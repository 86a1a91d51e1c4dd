#include <QAccessible>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include <gtest/gtest.h>

#include "RenderedAt.h"
#include "controls/tc_PBar.h"
#include "platform/Failure.h"

namespace {

using PBarGeometry::Percent;
using PBarGeometry::PercentText;

const QColor kBar(20, 30, 200);
const QColor kOutline(90, 80, 70);

// A bar of known colours, sized, without a window.
struct Bar : tc_PBar {
  explicit Bar(QSize size = {215, 15}, QWidget* parent = nullptr) : tc_PBar(parent) {
    QPalette palette;
    palette.setColor(QPalette::Highlight, kBar);
    palette.setColor(QPalette::Dark, kOutline);
    setPalette(palette);
    resize(size);
  }
  bool event(QEvent* event) override {
    paints += event->type() == QEvent::Paint ? 1 : 0;
    return tc_PBar::event(event);
  }
  int paints = 0;
};

QColor Back() {
  const ColourNumber face = Colours::GetSysColor(Colours::kButtonFace);
  return Colours::ToQColor(Colours::CalcMiddleColor(face, 16777215, 50));
}

}  // namespace

TEST(tc_PBar, ComputesThePercentage) {
  const QLocale english(QLocale::English, QLocale::UnitedStates);
  const QLocale german(QLocale::German, QLocale::Germany);
  struct Row {
    int value;
    int min;
    int max;
    const char* english;
    const char* german;
  };
  const Row rows[] = {{0, 0, 100, "0.00%", "0,00%"},        {1, 0, 3, "33.33%", "33,33%"},
                      {3, 0, 3, "100.00%", "100,00%"},      {15, 10, 20, "50.00%", "50,00%"},
                      {1, 0, 32, "3.13%", "3,13%"},         {0, 0, -1, "0.00%", "0,00%"},
                      {0, -2, -1, "200.00%", "200,00%"},    {0, 7, 100, "-7.53%", "-7,53%"},
                      {0, -50, -49, "5000.00%", "5000,00%"}};
  for (const Row& row : rows) {
    const std::optional<float> percent = Percent(row.value, row.min, row.max);
    ASSERT_TRUE(percent);
    EXPECT_EQ(PercentText(*percent, english).toStdString(), row.english);
    EXPECT_EQ(PercentText(*percent, german).toStdString(), row.german);
  }
  EXPECT_FALSE(Percent(3, 7, 7));
}

TEST(tc_PBar, PaintsOnceForManySteps) {
  Bar bar;
  bar.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&bar));
  QCoreApplication::processEvents();
  bar.paints = 0;
  bar.SetMax(1000);
  for (std::int16_t i = 0; i <= 1000; ++i) bar.SetValue(i);
  EXPECT_EQ(bar.paints, 0);
  QTRY_COMPARE(bar.paints, 1);
}

TEST(tc_PBar, KeepsItsRange) {
  tc_PBar bar;
  bar.SetValue(40);
  bar.SetValue(101);  // ignored
  EXPECT_EQ(bar.Value(), 40);
  bar.SetMin(50);
  EXPECT_EQ(bar.Value(), 40);
  try {
    bar.SetValue(49);
    FAIL() << "a position below the range went through";
  } catch (const Failure& failure) {
    EXPECT_EQ(static_cast<unsigned>(failure.Number()), 0x800403E9U);
    EXPECT_STREQ(failure.what(), "'Value' muss im Bereich zwischen 'Min' und 'Max' liegen.");
  }
  bar.SetValue(50);
  EXPECT_EQ(bar.Value(), 50);
  bar.SetMax(70);  // puts the position back to 0, be it below the range
  EXPECT_EQ(bar.Value(), 0);
  bar.SetValue(60);

  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&bar);
  ASSERT_NE(interface, nullptr);
  EXPECT_EQ(interface->role(), QAccessible::ProgressBar);
  EXPECT_EQ(interface->text(QAccessible::Value), "50%");
  QAccessibleValueInterface* const value = interface->valueInterface();
  ASSERT_NE(value, nullptr);
  value->setCurrentValue(65);  // it takes no input
  EXPECT_EQ(value->currentValue().toInt(), 60);
  EXPECT_EQ(value->minimumValue().toInt(), 50);
  EXPECT_EQ(value->maximumValue().toInt(), 70);
}

TEST(tc_PBar, PrintsWhiteOnTheBarAndTheInverseBesideIt) {
  for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
    Bar bar({100, 15});
    bar.SetValue(50);
    const QImage image = RenderedAt(bar, ratio);
    const int line = qRound(ratio);
    const int edge = qRound(49 * ratio);  // inverted from here on
    int white = 0;
    int black = 0;
    for (int y = line; y < image.height() - line; ++y) {
      for (int x = line; x < image.width() - line; ++x) {
        const int red = image.pixelColor(x, y).red();
        white += x < edge && red > 180 ? 1 : 0;
        black += x >= edge && red < 100 ? 1 : 0;
        if (x < edge) {
          ASSERT_GE(red, kBar.red()) << "the text is lighter than the bar";
        } else {
          ASSERT_LE(red, Back().red()) << "the text is darker than the background";
        }
      }
    }
    EXPECT_GT(white, 5) << ratio;
    EXPECT_GT(black, 5) << ratio;
  }
}

TEST(tc_PBar, AnEmptyRangeLeavesThePictureAsItIs) {
  Bar bar({60, 15});
  bar.SetMax(0);  // both ends at 0: nothing is drawn
  EXPECT_EQ(RenderedAt(bar, 1).pixelColor(0, 0), Back());
  bar.SetMax(4);
  bar.SetValue(4);
  bar.SetMax(0);
  EXPECT_EQ(RenderedAt(bar, 1).pixelColor(57, 1), kBar);

  bar.SetMax(7);
  EXPECT_THROW(bar.SetMin(7), Failure);
  EXPECT_THROW(bar.Redraw(), Failure);
  bar.resize(80, 15);  // the toolkit's own events fail nowhere
  bar.show();
  EXPECT_FALSE(RenderedAt(bar, 1).isNull());
}

// In 200 pixels one per cent is two: the box ends at 2 x value - 2, that column included. The row
// below the outline is free of text. Neither edge is on a whole pixel at 1.25 and 1.5.
TEST(tc_PBar, FillsSharplyToTwoPixelsBeforeItsWidth) {
  QWidget window;
  window.resize(310, 90);
  Bar bar({200, 15}, &window);
  bar.move(105, 65);
  for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
    for (const auto& [value, filled] : {std::pair(0, 1), {2, 3}, {25, 49}, {50, 99}, {99, 197}}) {
      bar.SetValue(static_cast<std::int16_t>(value));
      const QImage image = RenderedAt(window, ratio);
      const QPoint corner = QPoint(qRound(105 * ratio), qRound(65 * ratio));
      const QPoint end = QPoint(qRound(305 * ratio), qRound(80 * ratio)) - QPoint(1, 1);
      const int line = qRound(ratio);
      for (int x = corner.x(); x <= end.x(); ++x) {
        SCOPED_TRACE(testing::Message() << x << " at " << value << " and " << ratio);
        const bool isOutline = x < corner.x() + line || x > end.x() - line;
        const QColor inside = x < corner.x() + qRound(filled * ratio) ? kBar : Back();
        ASSERT_EQ(image.pixelColor(x, corner.y() + line), isOutline ? kOutline : inside);
        ASSERT_EQ(image.pixelColor(x, end.y() - line), isOutline ? kOutline : inside);
        ASSERT_EQ(image.pixelColor(x, corner.y()), kOutline);
        ASSERT_EQ(image.pixelColor(x, end.y()), kOutline);
      }
      EXPECT_NE(image.pixelColor(corner.x() - 1, corner.y()), kOutline);
      EXPECT_NE(image.pixelColor(end.x() + 1, corner.y()), kOutline);
    }
  }
}
