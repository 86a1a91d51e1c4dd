#include <map>
#include <ostream>

#include <gmock/gmock.h>

#include "platform/Failure.h"
#include "ui/BorderlessFrame.h"
#include "ui/Layout.h"

namespace Layout {

void PrintTo(Control control, std::ostream* out) {
  *out << "control " << static_cast<int>(control);
}

}  // namespace Layout

namespace {

using Layout::Control;

std::map<Control, QRect> MainArea(int W, int H, int HH, const Layout::OwnSizes& sizes = {}) {
  std::map<Control, QRect> boxes;
  Layout::MainArea(W, H, HH, sizes, [&](const Layout::Placement& placement) {
    boxes[placement.control] = placement.box;
  });
  return boxes;
}

struct Row {
  int W, H, HH;
  Control control;
  QRect box;
};

TEST(Layout, PlacesTheMainAreaByItsTable) {
  // 675 x 591: W x 0.025 + 180 = 196.875; (591 - 56) x 0.4 = 214; x 0.6 - 90 = 231.
  // 600 x 600 with a page of 100: share 100 / 600 + 0.3 = 0.4667, of 544 = 253.87 - 100.
  const std::vector<Row> rows = {
      {675, 591, 0, Control::picTypeList, {8, 56, 197, 214}},
      {675, 591, 0, Control::picModList, {215, 56, 451, 214}},
      {675, 591, 0, Control::cmdPicture, {8, 280, 57, 15}},
      {675, 591, 0, Control::cmdDescription, {65, 280, 89, 15}},
      {675, 591, 0, Control::picDescPic, {8, 295, 659, 231}},
      {675, 591, 0, Control::picBuffer, {8, 295, 659, 231}},
      // (675 - 460) / 2 = 107.5, to the even one.
      {675, 591, 0, Control::picButtons, {108, 534, 460, 51}},
      {675, 591, 0, Control::scrModTypeList, {180, 0, 17, 214}},
      {675, 591, 0, Control::scrModList, {434, 0, 17, 214}},
      {673, 591, 0, Control::picButtons, {106, 534, 460, 51}},
      {600, 600, 100, Control::html, {0, 48, 600, 93}},
      {600, 600, 100, Control::picTypeList, {8, 156, 195, 154}},
      {600, 600, 100, Control::picModList, {213, 156, 378, 154}},
      {600, 600, 100, Control::cmdPicture, {8, 320, 57, 15}},
      {600, 600, 100, Control::picDescPic, {8, 335, 584, 200}},
      // 1000 x 0.025 + 180 = 205; 1020 x 0.025 + 180 = 205.5, 980 gives 204.5: both even.
      {1020, 800, 0, Control::picTypeList, {8, 56, 206, 298}},
      {980, 800, 0, Control::picTypeList, {8, 56, 204, 298}},
      {980, 800, 0, Control::picModList, {222, 56, 749, 298}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(MainArea(row.W, row.H, row.HH).at(row.control), row.box)
        << row.W << " x " << row.H << " + " << row.HH << ", control "
        << static_cast<int>(row.control);
  }
}

TEST(Layout, StopsAtTheFirstNegativeSize) {
  // The detail area of a window 205 high would be 149 x 0.6 - 90 = -0.6 high, which rounds to -1.
  std::vector<Control> moved;
  const auto record = [&](const Layout::Placement& placement) {
    moved.push_back(placement.control);
  };
  EXPECT_THROW(Layout::MainArea(600, 205, 0, {}, record), Failure);
  EXPECT_THAT(moved, testing::ElementsAre(Control::html, Control::picTypeList, Control::picModList,
                                          Control::cmdPicture, Control::cmdDescription));
  moved.clear();
  EXPECT_THROW(Layout::MainArea(150, 591, 0, {}, record), Failure);  // no room for the mod list
  EXPECT_THAT(moved, testing::ElementsAre(Control::html, Control::picTypeList));
  moved.clear();
  EXPECT_THROW(Layout::MainArea(600, 0, 50, {}, record), Failure);
  EXPECT_THAT(moved, testing::IsEmpty());
}

TEST(Layout, EndsThePackTitleFlushWithTheCloseButton) {
  for (const int titleWidth : {0, 31, 400}) {
    Layout::OwnSizes sizes;
    sizes.lblTitel = QSize(titleWidth, 13);
    std::map<Control, QRect> boxes;
    for (const auto& placement : Layout::TitleArea(675, sizes)) {
      boxes[placement.control] = placement.box;
    }
    EXPECT_EQ(boxes.at(Control::cmdClose), QRect(651, 8, 15, 15));
    EXPECT_EQ(boxes.at(Control::cmdMinimize), QRect(633, 8, 15, 15));
    EXPECT_EQ(boxes.at(Control::lblTitel), QRect(666 - titleWidth, 27, titleWidth, 13));
    EXPECT_EQ(boxes.at(Control::lblTitel2), QRect(667 - titleWidth, 28, titleWidth, 13));
    EXPECT_EQ(boxes.at(Control::lblDockLink).topLeft(), QPoint(34, 18));
  }
}

TEST(Layout, MovesTheTilesWithTheWidth) {
  // -675 / 10 = -67.5 and -665 / 10 = -66.5, each to the even one.
  const auto tiles = Layout::TitleTiles(675);
  EXPECT_EQ(tiles.front(), -68);
  EXPECT_EQ(tiles.at(1), -28);
  EXPECT_EQ(tiles.back(), 652);
  EXPECT_EQ(Layout::TitleTiles(665).front(), -66);
  EXPECT_EQ(Layout::Logo(675), QPoint(34, 5));
}

TEST(Layout, KeepsThePanelBelowTheWindowOrOnePixelOverItsEdge) {
  EXPECT_EQ(Layout::Panel(675, 591, 330, false), QPoint(172, 607));
  EXPECT_EQ(Layout::Panel(675, 591, 330, true), QPoint(172, 502));
}

TEST(BorderlessFrame, TakesHoldOfBordersAndCorners) {
  struct Press {
    QPoint place;
    Qt::Edges edges;
  };
  for (const Press& press :
       {Press{{300, 300}, {}}, Press{{0, 300}, Qt::LeftEdge}, Press{{3, 300}, Qt::LeftEdge},
        Press{{4, 300}, {}}, Press{{599, 300}, Qt::RightEdge}, Press{{300, 0}, Qt::TopEdge},
        Press{{300, 399}, Qt::BottomEdge}, Press{{2, 10}, Qt::TopEdge | Qt::LeftEdge},
        Press{{590, 399}, Qt::BottomEdge | Qt::RightEdge}, Press{{10, 10}, {}},
        Press{{-1, 300}, {}}}) {
    EXPECT_EQ(BorderlessFrame::EdgesAt(press.place, QSize(600, 400)), press.edges)
        << press.place.x() << ", " << press.place.y();
  }
}

TEST(BorderlessFrame, DragsTheTakenEdgesDownToTheSmallestSize) {
  const QRect start(100, 100, 600, 400);
  const QSize smallest(500, 300);
  EXPECT_EQ(BorderlessFrame::Dragged(start, Qt::RightEdge | Qt::BottomEdge, {50, -20}, smallest),
            QRect(100, 100, 650, 380));
  EXPECT_EQ(BorderlessFrame::Dragged(start, Qt::LeftEdge | Qt::TopEdge, {-10, 30}, smallest),
            QRect(90, 130, 610, 370));
  EXPECT_EQ(BorderlessFrame::Dragged(start, Qt::LeftEdge, {900, 0}, smallest),
            QRect(200, 100, 500, 400));
  EXPECT_EQ(BorderlessFrame::Dragged(start, Qt::BottomEdge, {0, -900}, smallest),
            QRect(100, 100, 600, 300));
}

}  // namespace
