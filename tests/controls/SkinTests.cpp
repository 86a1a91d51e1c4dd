#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "controls/Colours.h"
#include "controls/Skin.h"
#include "controls/gallery/Gallery.h"

namespace {

constexpr QRgb kMagenta = qRgb(255, 0, 255);

// How much of magenta is in a colour: what red and blue have in common beyond green.
int MagentaIn(QRgb colour) {
  return std::min(qRed(colour), qBlue(colour)) - qGreen(colour);
}

struct Picture {
  std::string name;
  int width;
  int height;
};

// The list from which the skin is rendered: name, width, height.
std::vector<Picture> ListedPictures() {
  std::vector<Picture> pictures;
  std::ifstream list(SKIN_LIST);
  for (std::string line; std::getline(list, line);) {
    Picture picture;
    if (std::istringstream(line) >> picture.name >> picture.width >> picture.height) {
      pictures.push_back(picture);
    }
  }
  return pictures;
}

TEST(Skin, HasEveryPictureAtBothDensities) {
  const std::vector<Picture> pictures = ListedPictures();
  ASSERT_GT(pictures.size(), 25U);
  for (const Picture& listed : pictures) {
    for (const int ratio : {1, 2}) {
      const QPixmap picture = Skin::Picture(QString::fromStdString(listed.name), ratio);
      EXPECT_EQ(picture.size(), QSize(listed.width, listed.height) * ratio) << listed.name;
      EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(listed.width, listed.height))
          << listed.name;
    }
  }
  EXPECT_TRUE(Skin::Picture("no such picture").isNull());
}

TEST(Skin, HasNoFringeWhereMagentaIsTakenOut) {
  for (const char* const name : {"logo", "splash_title", "scroll_h_bar", "scroll_h_bar_over",
                                 "scroll_v_bar", "scroll_v_bar_over"}) {
    for (const int ratio : {1, 2}) {
      const QPixmap picture = Skin::Picture(name, ratio);
      const QImage cut = Skin::WithoutMagenta(picture).toImage();
      EXPECT_EQ(cut.devicePixelRatio(), ratio);
      int transparent = 0;
      int worst = 0;
      for (int y = 0; y < cut.height(); ++y) {
        for (int x = 0; x < cut.width(); ++x) {
          if (qAlpha(cut.pixel(x, y)) == 0) {
            ++transparent;
          } else {
            worst = std::max(worst, MagentaIn(cut.pixel(x, y)));
          }
        }
      }
      EXPECT_GT(transparent, 0) << name;
      EXPECT_LT(worst, 40) << name << " at " << ratio;
    }
  }
}

TEST(Skin, TheGripHasItsTwoColoursAndTheTileNoSeam) {
  const QImage grip = Skin::Picture("size_grip").toImage();
  std::set<QRgb> colours;
  for (int y = 0; y < grip.height(); ++y) {
    for (int x = 0; x < grip.width(); ++x) colours.insert(grip.pixel(x, y));
  }
  EXPECT_EQ(colours, (std::set<QRgb>{qRgb(159, 165, 181), qRgb(221, 223, 230)}));
  EXPECT_EQ(grip.pixel(0, 0), qRgb(159, 165, 181));

  // Across the seam the colours differ no more than inside the tile.
  const QImage tile = Skin::Picture("title_tile").toImage();
  const auto step = [&](int x, int y) {
    return std::abs(qGreen(tile.pixel(x, y)) - qGreen(tile.pixel((x + 1) % tile.width(), y)));
  };
  int inside = 0;
  int seam = 0;
  for (int y = 0; y < tile.height(); ++y) {
    for (int x = 0; x + 1 < tile.width(); ++x) inside = std::max(inside, step(x, y));
    seam = std::max(seam, step(tile.width() - 1, y));
  }
  EXPECT_LE(seam, inside);
}

// The gallery as a person sees it: every part of it drawn, in the looks' colours, without a trace
// of the colour that means transparent.
TEST(Gallery, ShowsEveryControlInItsLook) {
  Gallery gallery;
  gallery.show();
  const QImage picture = gallery.grab().toImage();
  struct Spot {
    const char* what;
    QPoint place;
    ColourNumber colour;
  };
  for (const Spot& spot : {
           Spot{"frame", {5, 5}, 11904415},
           Spot{"face of the normal look", {20, 36}, 4336663},
           Spot{"face of the look under the mouse", {112, 36}, 8082219},
           Spot{"face of the pressed look, moved", {206, 38}, 6833700},
           Spot{"frame of the pressed look", {202, 40}, 16777215},
           Spot{"shadow of the normal look", {98, 51}, 0},
       }) {
    EXPECT_EQ(Colours::FromQColor(picture.pixelColor(spot.place)), spot.colour) << spot.what;
  }
  const auto coloursIn = [&](const QRect& area) {
    std::set<QRgb> colours;
    for (int y = area.top(); y <= area.bottom(); ++y) {
      for (int x = area.left(); x <= area.right(); ++x) colours.insert(picture.pixel(x, y));
    }
    return colours;
  };
  EXPECT_FALSE(coloursIn(picture.rect()).contains(kMagenta));
  for (const QRect& area : {QRect(16, 136, 88, 31), QRect(16, 82, 44, 21), QRect(500, 52, 215, 15),
                            QRect(500, 160, 160, 16), QRect(690, 160, 16, 160),
                            QRect(16, 552, 395, 75), QRect(884, 624, 16, 16)}) {
    EXPECT_GE(coloursIn(area).size(), 2U) << area.x() << ", " << area.y();
  }
}

}  // namespace
