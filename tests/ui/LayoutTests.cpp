#include <map>

#include <gmock/gmock.h>

#include "platform/Failure.h"
#include "ui/BorderlessFrame.h"
#include "ui/Layout.h"
#include "ui/PictureFit.h"

namespace {

using Layout::Control;

std::map<Control, QRect> MainArea(int W, int H, int HH) {
  std::map<Control, QRect> boxes;
  Layout::MainArea(W, H, HH, {}, [&](const auto& each) { boxes[each.control] = each.box; });
  return boxes;
}

TEST(Layout, PlacesTheMainAreaByItsTable) {
  // 675 x 591: W x 0.025 + 180 = 196.875; (591 - 56) x 0.4 = 214; x 0.6 - 90 = 231.
  // 600 x 600 with a page of 100: share 100 / 600 + 0.3 = 0.4667, of 544 = 253.87 - 100.
  struct Row {
    int W, H, HH;
    Control control;
    QRect box;
  };
  for (const Row& row : std::vector<Row>{
           {675, 591, 0, Control::picTypeList, {8, 56, 197, 214}},
           {675, 591, 0, Control::picModList, {215, 56, 451, 214}},
           {675, 591, 0, Control::cmdDescription, {65, 280, 89, 15}},
           {675, 591, 0, Control::picBuffer, {8, 295, 659, 231}},
           // (675 - 460) / 2 = 107.5, to the even one.
           {675, 591, 0, Control::picButtons, {108, 534, 460, 51}},
           {675, 591, 0, Control::scrModList, {434, 0, 17, 214}},
           {673, 591, 0, Control::picButtons, {106, 534, 460, 51}},
           {600, 600, 100, Control::html, {0, 48, 600, 93}},
           {600, 600, 100, Control::picTypeList, {8, 156, 195, 154}},
           {600, 600, 100, Control::picDescPic, {8, 335, 584, 200}},
           // 1000 x 0.025 + 180 = 205; 1020 x 0.025 + 180 = 205.5, 980 gives 204.5: both even.
           {1020, 800, 0, Control::picTypeList, {8, 56, 206, 298}},
           {980, 800, 0, Control::picModList, {222, 56, 749, 298}},
       }) {
    EXPECT_EQ(MainArea(row.W, row.H, row.HH).at(row.control), row.box)
        << row.W << " x " << row.H << " + " << row.HH << ", control "
        << static_cast<int>(row.control);
  }
}

TEST(Layout, StopsAtTheFirstNegativeSize) {
  const auto moved = [](int W, int H, int HH) {
    std::vector<Control> controls;
    EXPECT_THROW(
        Layout::MainArea(W, H, HH, {}, [&](const auto& each) { controls.push_back(each.control); }),
        Failure);
    return controls;
  };
  // The detail area of a window 205 high would be 149 x 0.6 - 90 = -0.6 high, which rounds to -1.
  EXPECT_THAT(moved(600, 205, 0),
              testing::ElementsAre(Control::html, Control::picTypeList, Control::picModList,
                                   Control::cmdPicture, Control::cmdDescription));
  EXPECT_THAT(moved(150, 591, 0), testing::ElementsAre(Control::html, Control::picTypeList))
      << "no room for the mod list";
  EXPECT_THAT(moved(600, 0, 50), testing::IsEmpty());
}

TEST(Layout, PlacesTitleAndTiles) {
  for (const int titleWidth : {0, 31, 400}) {
    Layout::OwnSizes sizes;
    sizes.lblTitel = QSize(titleWidth, 13);
    std::map<Control, QRect> boxes;
    for (const auto& each : Layout::TitleArea(675, sizes)) boxes[each.control] = each.box;
    // Flush with the close button.
    EXPECT_EQ(boxes.at(Control::lblTitel), QRect(666 - titleWidth, 27, titleWidth, 13));
    EXPECT_EQ(boxes.at(Control::lblTitel2), QRect(667 - titleWidth, 28, titleWidth, 13));
  }
  // -675 / 10 = -67.5 and -665 / 10 = -66.5, each to the even one.
  const auto tiles = Layout::TitleTiles(675);
  EXPECT_EQ(tiles.front(), -68);
  EXPECT_EQ(tiles.at(1), -28);
  EXPECT_EQ(tiles.back(), 652);
  EXPECT_EQ(Layout::TitleTiles(665).front(), -66);
}

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

TEST(BorderlessFrame, TakesHoldOfBordersAndCorners) {
  for (const auto& [x, y, edges] :
       std::vector<std::tuple<int, int, Qt::Edges>>{{300, 300, {}},
                                                    {0, 300, Qt::LeftEdge},
                                                    {3, 300, Qt::LeftEdge},
                                                    {4, 300, {}},
                                                    {599, 300, Qt::RightEdge},
                                                    {300, 0, Qt::TopEdge},
                                                    {300, 399, Qt::BottomEdge},
                                                    {2, 10, Qt::TopEdge | Qt::LeftEdge},
                                                    {590, 399, Qt::BottomEdge | Qt::RightEdge},
                                                    {10, 10, {}},
                                                    {-1, 300, {}}}) {
    EXPECT_EQ(BorderlessFrame::EdgesAt({x, y}, {600, 400}), edges) << x << ", " << y;
  }
}

}  // namespace
