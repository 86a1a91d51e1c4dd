#include <gtest/gtest.h>

#include "platform/Failure.h"
#include "ui/PictureFit.h"

TEST(PictureFit, FillsTheSurfaceAsFarAsItsShapeAllows) {
  struct Row {
    const char* name;
    QSize picture, surface;
    QRect box;
  };
  for (const Row& row : {
           Row{"same size", {434, 235}, {434, 235}, {0, 0, 434, 235}},
           Row{"same shape", {868, 470}, {434, 235}, {0, 0, 434, 235}},
           Row{"wide", {800, 200}, {652, 235}, {0, 36, 652, 163}},
           Row{"small, enlarged", {2, 1}, {652, 235}, {91, 0, 470, 235}},
           // 352.5 goes to 352; a margin of 2.5 to 2, one of 3.5 to 4.
           Row{"half of a width", {3, 2}, {652, 235}, {150, 0, 352, 235}},
           Row{"margin left, to even below", {10, 10}, {15, 10}, {2, 0, 10, 10}},
           Row{"margin left, to even above", {10, 10}, {17, 10}, {4, 0, 10, 10}},
           Row{"margin above", {20, 10}, {20, 17}, {0, 4, 20, 10}},
           Row{"half of a height", {40, 10}, {34, 20}, {0, 6, 34, 8}},
           // In single precision 5 x 0.7 is 3.5.
           Row{"single precision", {7, 10}, {100, 5}, {48, 0, 4, 5}},
           Row{"a line of pixels", {10000, 1}, {100, 50}, {0, 25, 100, 0}},
           Row{"surface without height", {4, 3}, {100, 0}, {50, 0, 0, 0}},
       }) {
    const QRect box = PictureFit::Fit(row.picture, row.surface);
    EXPECT_EQ(box, row.box) << row.name << ": " << box.x() << ", " << box.y() << ", " << box.width()
                            << " x " << box.height();
  }
  for (const QSize& size : {QSize(0, 5), QSize(5, 0), QSize()}) {
    EXPECT_THROW(PictureFit::Fit(size, {10, 10}), Failure);
  }
}
