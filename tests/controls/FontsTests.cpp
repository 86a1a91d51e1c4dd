#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "controls/Fonts.h"

namespace {

constexpr int kSide = 32;

/// How many pixels of each quarter of a picture a drawn letter colours.
std::vector<int> QuartersOf(QChar letter) {
  QImage picture(kSide, kSide, QImage::Format_RGB32);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.setPen(Qt::black);
  Fonts::DrawGlyph(painter, picture.rect(), kSide / 2, letter);
  painter.end();
  std::vector<int> quarters(4);
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const std::size_t quarter = (y < kSide / 2 ? 0U : 2U) + (x < kSide / 2 ? 0U : 1U);
      if (qGray(picture.pixel(x, y)) < 128) ++quarters[quarter];
    }
  }
  return quarters;
}

// Where the font isn't there, its letters would come out as letters of another.
TEST(Fonts, DrawsTheGlyphsOfWindowsWithoutTheirFont) {
  const std::vector<int> close = QuartersOf('r');
  for (const int quarter : close) EXPECT_GT(quarter, 4) << "the cross reaches into all quarters";
  const std::vector<int> minimise = QuartersOf('0');
  EXPECT_EQ(minimise[0] + minimise[1], 0) << "the bar lies below the middle";
  EXPECT_GT(minimise[2], 4);
  EXPECT_GT(QuartersOf('1')[0], 4);
  EXPECT_NE(QuartersOf('1'), QuartersOf('2'));
  EXPECT_EQ(QuartersOf('x'), std::vector<int>(4)) << "what stands for no glyph draws nothing";
}

TEST(Fonts, ASqueezedCaptionStandsWhereOthersDo) {
  QFont squeezed = Fonts::Tahoma();
  squeezed.setStretch(90);
  EXPECT_EQ(Fonts::CaptionSize(squeezed, "k").height(),
            Fonts::CaptionSize(Fonts::Tahoma(), "k").height());
}

TEST(Fonts, BoldIsAsHeavyAtEveryDensity) {
  const auto ink = [](bool isBold, double ratio) {
    QImage picture(static_cast<int>(120 * ratio), static_cast<int>(20 * ratio),
                   QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    QFont font = Fonts::Tahoma();
    font.setBold(isBold);
    painter.setFont(font);
    Fonts::PrintInWeight(painter, [&] { painter.drawText(2, 14, "Hillhill HILL"); });
    painter.end();
    double sum = 0;
    for (int i = 0; i < picture.width() * picture.height(); ++i) {
      sum += 255 - qGray(picture.pixel(i % picture.width(), i / picture.width()));
    }
    return sum;
  };
  const double weight = ink(true, 1) / ink(false, 1);
  for (const double ratio : {1.25, 1.5, 2.0, 3.0}) {
    EXPECT_NEAR(ink(true, ratio) / ink(false, ratio) / weight, 1, 0.15) << ratio;
  }
}

}  // namespace
