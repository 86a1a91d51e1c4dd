#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <functional>
#include <vector>

/// Where everything of the main window stands, worked out from the size of its inner area alone.
/// All lengths are pixels; what comes out with a fraction is rounded to the nearest whole number,
/// halves to the even one, and a width that serves the next control is the rounded one.
namespace Layout {

/// Height of the title strip: a press on it moves the window.
inline constexpr int kTitleStripHeight = 47;
inline constexpr int kTileStep = 40;
inline constexpr QSize kDesignSize(675, 591);

enum class Control {
  html,
  picTypeList,
  picModList,
  cmdPicture,
  cmdDescription,
  picDescPic,
  picBuffer,
  picButtons,
  scrModTypeList,
  scrModList,
  lblDockLink,
  cmdMinimize,
  cmdClose,
  lblTitel,
  lblTitel2,
};

struct Placement {
  Control control;
  QRect box;
};

/// The sizes that the layout takes as they are.
struct OwnSizes {
  int htmlHeight = 93;  // the strip's own height, which the opening of a pack sets
  QSize cmdPicture{57, 15};
  QSize cmdDescription{89, 15};
  QSize picButtons{460, 51};
  int scrollBarWidth = 17;
  QSize lblDockLink{143, 20};
  QSize cmdMinimize{15, 15};
  QSize cmdClose{15, 15};
  QSize lblTitel;
};

/// Moves one control.
using Mover = std::function<void(const Placement& placement)>;

/// Left edges of the tiles of the title strip in a window of that width.
std::vector<int> TitleTiles(int W);
/// Lists, detail area, button bar and scroll bars in a window of W by H with a page `HH` high, in
/// the order in which they move. A computed size that is negative is a failure: the controls
/// ahead of that one have moved then.
void MainArea(int W, int H, int HH, const OwnSizes& sizes, const Mover& move);
/// The lowest window in which all of the main area has its place.
int SmallestHeight(int HH);
/// Upper left corner of the logo.
QPoint Logo(int W);
/// How wide the pack title may be beside a logo that wide.
int TitleRoom(int W, int logoWidth);
/// Link, window buttons and pack title on the title strip.
std::vector<Placement> TitleArea(int W, const OwnSizes& sizes);

/// How far the sliding panel comes up.
inline constexpr int kPanelWay = 105;
/// Upper left corner of the sliding panel.
QPoint Panel(int W, int H, int panelWidth, bool isShown);

}  // namespace Layout
