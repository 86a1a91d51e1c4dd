#include <QGuiApplication>

#include <gtest/gtest.h>

#include "controls/Colours.h"

namespace {

ColourNumber Rgb(int red, int green, int blue) {
  return red | (green << 8) | (blue << 16);
}

ColourNumber SystemColourNumber(int index) {
  return static_cast<ColourNumber>(0x80000000U | static_cast<unsigned>(index));
}

}  // namespace

TEST(CalcMiddleColor, MeasuresUpwardFromTheDarkerSide) {
  struct Row {
    ColourNumber first;
    ColourNumber second;
    std::int16_t percent;
    ColourNumber expected;
  };
  const Row rows[] = {
      {10784648, 6050376, 25, Rgb(88, 97, 110)},
      {12957875, 16777215, 50, Rgb(217, 220, 226)},
      {6050376, 0, 50, Rgb(36, 41, 46)},
      {Rgb(1, 3, 5), 0, 50, Rgb(0, 2, 2)},  // halves to the even number
      {Rgb(10, 200, 30), Rgb(20, 100, 30), 0, Rgb(10, 100, 30)},
      {Rgb(10, 200, 30), Rgb(20, 100, 30), 100, Rgb(20, 200, 30)},
      {Rgb(10, 200, 30), Rgb(20, 100, 30), 30, Rgb(13, 130, 30)},
      {Rgb(100, 0, 0), Rgb(200, 0, 0), 200, Rgb(255, 0, 0)},  // never into the next channel
      {Rgb(0, 100, 0), Rgb(0, 200, 0), -200, 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Colours::CalcMiddleColor(row.first, row.second, row.percent), row.expected);
    EXPECT_EQ(Colours::CalcMiddleColor(row.second, row.first, row.percent), row.expected);
  }
}

TEST(Colours, FindTheRoleOfASystemColour) {
  QPalette palette;
  palette.setColor(QPalette::Highlight, QColor(1, 2, 3));
  palette.setColor(QPalette::Dark, QColor(4, 5, 6));
  palette.setColor(QPalette::Button, QColor(100, 151, 200));
  EXPECT_EQ(Colours::GetSysColor(Colours::kHighlight, palette), Rgb(1, 2, 3));
  EXPECT_EQ(Colours::GetSysColor(Colours::kButtonShadow, palette), Rgb(4, 5, 6));
  EXPECT_EQ(Colours::GetSysColor(Colours::kButtonFace, palette), Rgb(100, 151, 200));
  EXPECT_EQ(Colours::GetSysColor(25, palette), 0);
  EXPECT_EQ(Colours::ToQColor(SystemColourNumber(13), palette), QColor(1, 2, 3));
  EXPECT_EQ(Colours::ToQColor(12957875), QColor(179, 184, 197));
  EXPECT_EQ(Colours::FromQColor(QColor(179, 184, 197)), 12957875);

  const QPalette former = QGuiApplication::palette();
  QGuiApplication::setPalette(palette);
  EXPECT_EQ(Colours::CalcMiddleColor(SystemColourNumber(15), 16777215, 50), Rgb(178, 203, 228));
  QGuiApplication::setPalette(former);
}
