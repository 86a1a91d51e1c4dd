#include "ui/Layout.h"

#include <algorithm>

#include "controls/Twips.h"
#include "platform/Failure.h"

namespace Layout {

namespace {

constexpr int kMargin = 8;
constexpr int kTop = 56;      // of the lists, below title strip and page
constexpr int kHtmlTop = 48;  // of the page
constexpr int kGap = 10;      // between the lists, and between them and the tabs
constexpr int kBelowDetail = 90;
constexpr int kModListRest = 27;  // what the mod list leaves of the width beside the type list
constexpr double kTypeListBase = 180;
constexpr double kTypeListShare = 0.025;
constexpr double kListShare = 0.4;
constexpr double kListShareWithPage = 0.3;
constexpr double kLogoShare = 0.05;
constexpr int kLogoTop = 5;
constexpr int kWindowButtonsTop = 8;
constexpr int kTitleTop = 27;
constexpr int kTitleRight = 9;  // from the window's edge
constexpr int kBesideLogo = 12;
constexpr int kLinkTop = 18;
constexpr int kPanelBelow = 16;

/// The share of the height below the title strip that the lists take. Single precision.
float ListShareOf(int H, int HH) {
  if (HH == 0) return static_cast<float>(kListShare);
  if (H == 0) Fail("layout: a window without height has no place for a page");
  return static_cast<float>(1.0 / H * HH + kListShareWithPage);
}

/// Heights of the lists and of the detail area. Negative where the window is too low for them.
struct Heights {
  int lists;
  int detail;
};

Heights HeightsOf(int H, int HH) {
  const float ListShare = ListShareOf(H, HH);
  const float DetailShare = 1.0F - ListShare;
  const auto below = static_cast<double>(H - kTop);
  return {RoundToEven(below * ListShare - HH), RoundToEven(below * DetailShare - kBelowDetail)};
}

/// Moves one control; a negative size is one that no control accepts.
void MoveTo(const Mover& move, Control control, const char* name, const QRect& box) {
  if (box.width() < 0 || box.height() < 0) {
    Fail("layout: ", name, " would be ", box.width(), " by ", box.height(), " pixels");
  }
  move({control, box});
}

}  // namespace

std::vector<int> TitleTiles(int W) {
  std::vector<int> tiles;
  for (int x = RoundToEven(-W / 10.0); x <= W; x += kTileStep) tiles.push_back(x);
  return tiles;
}

void MainArea(int W, int H, int HH, const OwnSizes& sizes, const Mover& move) {
  const Heights heights = HeightsOf(H, HH);

  MoveTo(move, Control::html, "html", {0, kHtmlTop, W, sizes.htmlHeight});
  const QRect types(kMargin, HH + kTop, RoundToEven(W * kTypeListShare + kTypeListBase),
                    heights.lists);
  MoveTo(move, Control::picTypeList, "picTypeList", types);
  const QRect mods(kMargin + types.width() + kGap, HH + kTop, W - types.width() - kModListRest,
                   types.height());
  MoveTo(move, Control::picModList, "picModList", mods);
  const QRect picture({kMargin, kTop + types.height() + kGap + HH}, sizes.cmdPicture);
  MoveTo(move, Control::cmdPicture, "cmdPicture", picture);
  MoveTo(move, Control::cmdDescription, "cmdDescription",
         {{picture.width() + kMargin, picture.top()}, sizes.cmdDescription});
  const QRect detail(kMargin, picture.top() + picture.height(), W - 2 * kMargin, heights.detail);
  MoveTo(move, Control::picDescPic, "picDescPic", detail);
  MoveTo(move, Control::picBuffer, "picBuffer", detail);
  MoveTo(move, Control::picButtons, "picButtons",
         {{RoundToEven((W - sizes.picButtons.width()) / 2.0),
           detail.top() + detail.height() + kMargin},
          sizes.picButtons});
  const int bar = sizes.scrollBarWidth;
  MoveTo(move, Control::scrModTypeList, "scrModTypeList",
         {types.width() - bar, 0, bar, types.height()});
  MoveTo(move, Control::scrModList, "scrModList", {mods.width() - bar, 0, bar, mods.height()});
}

int SmallestHeight(int HH) {
  int H = kTop;
  for (Heights heights = HeightsOf(H, HH); heights.lists < 0 || heights.detail < 0;) {
    heights = HeightsOf(++H, HH);
  }
  return H;
}

int TitleRoom(int W, int logoWidth) {
  return std::max(0, W - kTitleRight - Logo(W).x() - logoWidth - kBesideLogo);
}

QPoint Logo(int W) {
  return {RoundToEven(W * kLogoShare), kLogoTop};
}

std::vector<Placement> TitleArea(int W, const OwnSizes& sizes) {
  const QRect close({W - 24, kWindowButtonsTop}, sizes.cmdClose);
  const QPoint title(close.left() + close.width() - sizes.lblTitel.width(), kTitleTop);
  return {{Control::lblDockLink, {{RoundToEven(W * kLogoShare), kLinkTop}, sizes.lblDockLink}},
          {Control::cmdMinimize, {{W - 42, kWindowButtonsTop}, sizes.cmdMinimize}},
          {Control::cmdClose, close},
          {Control::lblTitel, {title, sizes.lblTitel}},
          {Control::lblTitel2, {title + QPoint(1, 1), sizes.lblTitel}}};
}

QPoint Panel(int W, int H, int panelWidth, bool isShown) {
  return {RoundToEven((W - panelWidth) / 2.0), H + kPanelBelow - (isShown ? kPanelWay : 0)};
}

}  // namespace Layout
