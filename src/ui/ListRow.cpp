#include "ui/ListRow.h"

#include <QPoint>

#include "controls/Fonts.h"
#include "ui/ListSurface.h"

namespace {

constexpr int kTextLeft = 30;
constexpr int kNameTop = 2;
constexpr int kSecondTop = 15;
constexpr QPoint kTickPlace(5, 5);
constexpr QPoint kEmptyTextPlace(15, 10);
constexpr const char* kTickGlyph = "a";  // Marlett's check mark

constexpr int kNamePixels = 13;  // 10 points
constexpr int kTextPixels = 11;  // 8 points
constexpr int kTickPixels = 21;  // 16 points

constexpr ColourNumber kSelected = 6050376;
constexpr ColourNumber kPanel = 10784648;
constexpr ColourNumber kWhite = 16777215;
constexpr ColourNumber kRed = 255;

// The colours in between.
struct Mixed {
  ColourNumber selectedUnderMouse = Colours::CalcMiddleColor(kPanel, kSelected, 25);
  ColourNumber underMouse = Colours::CalcMiddleColor(ListRow::kBack, kWhite, 50);
  ColourNumber darkText = Colours::CalcMiddleColor(kSelected, 0, 50);
};

}  // namespace

namespace ListRow {

const ListColours& TypeColours() {
  static const Mixed mixed;
  static const ListColours colours = {
      .selectedUnderMouse = {mixed.selectedUnderMouse, kWhite, kWhite, kWhite},
      .selected = {kSelected, kWhite, kWhite, kWhite},
      .underMouse = {mixed.underMouse, kRed, kSelected, kSelected},
      .plain = {kBack, mixed.darkText, kSelected, mixed.darkText},
  };
  return colours;
}

const ListColours& ModColours() {
  static const Mixed mixed;
  static const ListColours colours = {
      .selectedUnderMouse = {mixed.selectedUnderMouse, kWhite, kWhite, kWhite},
      .selected = {kSelected, kWhite, kWhite, kWhite},
      .underMouse = {mixed.underMouse, kRed, mixed.darkText, mixed.darkText},
      .plain = {kBack, mixed.darkText, mixed.darkText, mixed.darkText},
  };
  return colours;
}

bool Touches(const ListSurface& surface, int top) {
  return top <= surface.height() && top + kHeight >= 0;
}

Painter::Painter()
    : name_(Fonts::Tahoma(kNamePixels)),
      text_(Fonts::Tahoma(kTextPixels)),
      tick_(Fonts::Marlett(kTickPixels)) {
  name_.setBold(true);
}

void Painter::PaintRow(ListSurface& surface, int top, const RowColours& colours,
                       const Content& row) const {
  surface.FillBox({0, top, surface.width(), kHeight}, colours.fill);
  surface.Print({kTextLeft, top + kNameTop}, row.name, name_, colours.name);
  surface.Print({kTextLeft, top + kSecondTop}, row.second, text_, colours.second);
  if (row.tick == kNotTicked) return;
  const ColourNumber half = Colours::CalcMiddleColor(colours.tick, colours.fill, 50);
  surface.Print(QPoint(0, top) + kTickPlace, kTickGlyph, tick_,
                row.tick == kHalfTicked ? half : colours.tick);
}

void Painter::PaintEmptyText(ListSurface& surface) const {
  surface.Print(kEmptyTextPlace, kEmptyText, text_, kSelected);
}

}  // namespace ListRow
