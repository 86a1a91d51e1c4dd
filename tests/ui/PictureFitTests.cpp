#include <ostream>

#include <gtest/gtest.h>

#include "platform/Failure.h"
#include "ui/PictureFit.h"

namespace {

struct FitCase {
  const char* name;
  QSize picture;
  QSize surface;
  QRect box;
};

void PrintTo(const FitCase& row, std::ostream* out) {
  *out << row.name;
}

class FitTest : public testing::TestWithParam<FitCase> {};

TEST_P(FitTest, FillsTheSurfaceAsFarAsItsShapeAllows) {
  const FitCase& row = GetParam();
  const QRect box = PictureFit::Fit(row.picture, row.surface);
  EXPECT_EQ(box, row.box) << box.x() << ", " << box.y() << ", " << box.width() << " x "
                          << box.height();
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, FitTest,
    testing::Values(FitCase{"same size", {434, 235}, {434, 235}, {0, 0, 434, 235}},
                    FitCase{"same shape", {868, 470}, {434, 235}, {0, 0, 434, 235}},
                    FitCase{"wide", {800, 200}, {652, 235}, {0, 36, 652, 163}},
                    FitCase{"narrow", {434, 235}, {652, 235}, {109, 0, 434, 235}},
                    FitCase{"small, enlarged", {2, 1}, {652, 235}, {91, 0, 470, 235}},
                    // 352.5 goes to 352; a margin of 2.5 to 2, one of 3.5 to 4.
                    FitCase{"half of a width", {3, 2}, {652, 235}, {150, 0, 352, 235}},
                    FitCase{"margin left, to even below", {10, 10}, {15, 10}, {2, 0, 10, 10}},
                    FitCase{"margin left, to even above", {10, 10}, {17, 10}, {4, 0, 10, 10}},
                    FitCase{"margin above", {20, 10}, {20, 15}, {0, 2, 20, 10}},
                    FitCase{"half of a height", {40, 10}, {30, 20}, {0, 6, 30, 8}},
                    // In single precision 5 x 0.7 is 3.5.
                    FitCase{"single precision", {7, 10}, {100, 5}, {48, 0, 4, 5}},
                    FitCase{"a line of pixels", {10000, 1}, {100, 50}, {0, 25, 100, 0}},
                    FitCase{"surface without height", {4, 3}, {100, 0}, {50, 0, 0, 0}}));

TEST(PictureFit, FailsOnAPictureWithoutShape) {
  for (const QSize& size : {QSize(0, 5), QSize(5, 0), QSize()}) {
    EXPECT_THROW(PictureFit::Fit(size, {10, 10}), Failure);
  }
}

}  // namespace
