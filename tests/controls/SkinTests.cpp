#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "controls/Skin.h"
#include "controls/gallery/Gallery.h"

namespace {

std::set<QRgb> ColoursIn(const QImage& picture, const QRect& area) {
  std::set<QRgb> colours;
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) colours.insert(picture.pixel(x, y));
  }
  return colours;
}

// The skin is rendered from a list of name, width and height.
TEST(Skin, HasEveryPictureAtBothDensities) {
  std::ifstream list(SKIN_LIST);
  int pictures = 0;
  for (std::string line; std::getline(list, line);) {
    std::string name;
    int width = 0;
    int height = 0;
    if (!(std::istringstream(line) >> name >> width >> height)) continue;
    ++pictures;
    for (const int ratio : {1, 2}) {
      const QPixmap picture = Skin::Picture(QString::fromStdString(name), ratio);
      EXPECT_EQ(picture.size(), QSize(width, height) * ratio) << name;
      EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(width, height)) << name;
    }
  }
  EXPECT_GT(pictures, 25);
  EXPECT_TRUE(Skin::Picture("no such picture").isNull());
}

TEST(Skin, HasNoFringeWhereMagentaIsTakenOut) {
  for (const char* const name : {"logo", "splash_title", "scroll_h_bar", "scroll_h_bar_over",
                                 "scroll_v_bar", "scroll_v_bar_over"}) {
    for (const int ratio : {1, 2}) {
      const QImage cut = Skin::WithoutMagenta(Skin::Picture(name, ratio)).toImage();
      EXPECT_EQ(cut.devicePixelRatio(), ratio);
      int transparent = 0;
      for (const QRgb colour : ColoursIn(cut, cut.rect())) {
        if (qAlpha(colour) == 0) ++transparent;
        // Magenta is what red and blue have in common beyond green.
        EXPECT_LT(std::min(qRed(colour), qBlue(colour)) - qGreen(colour), 40) << name;
      }
      EXPECT_EQ(transparent, 1) << name << " at " << ratio;
    }
  }
}

TEST(Skin, TheGripHasItsTwoColoursAndTheTileNoSeam) {
  const QImage grip = Skin::Picture("size_grip").toImage();
  EXPECT_EQ(ColoursIn(grip, grip.rect()),
            (std::set<QRgb>{qRgb(159, 165, 181), qRgb(221, 223, 230)}));
  EXPECT_EQ(grip.pixel(0, 0), qRgb(159, 165, 181));

  // Across the seam the colours differ no more than inside the tile.
  const QImage tile = Skin::Picture("title_tile").toImage();
  int inside = 0;
  int seam = 0;
  for (int y = 0; y < tile.height(); ++y) {
    for (int x = 0; x < tile.width(); ++x) {
      const int next = (x + 1) % tile.width();
      const int step = std::abs(qGreen(tile.pixel(x, y)) - qGreen(tile.pixel(next, y)));
      int& largest = next == 0 ? seam : inside;
      largest = std::max(largest, step);
    }
  }
  EXPECT_LE(seam, inside);
}

// The gallery as a person sees it: every part of it drawn, without a trace of the colour that means
// transparent.
TEST(Gallery, ShowsEveryControl) {
  Gallery gallery;
  gallery.show();
  const QImage picture = gallery.grab().toImage();
  EXPECT_FALSE(ColoursIn(picture, picture.rect()).contains(qRgb(255, 0, 255)));
  EXPECT_EQ(picture.pixel(5, 5), qRgb(159, 165, 181));
  for (const QRect& area : {QRect(16, 136, 88, 31), QRect(16, 82, 44, 21), QRect(500, 52, 215, 15),
                            QRect(500, 160, 160, 16), QRect(690, 160, 16, 160),
                            QRect(16, 552, 395, 75), QRect(884, 624, 16, 16)}) {
    EXPECT_GE(ColoursIn(picture, area).size(), 2U) << area.x() << ", " << area.y();
  }
}

}  // namespace
