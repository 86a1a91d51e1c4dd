#pragma once

#include <QFont>
#include <QString>
#include <cstdint>

#include "controls/Colours.h"

class ListSurface;

/// How a row of the catalogue's lists looks.
///
///     0     30
///     +-----+----------------------+
///     |     | Name                 |   13 pixels bold, from 2 on
///     |  v  | second line          |   11 pixels, from 15 on; the tick 21 pixels, from (5, 5) on
///     +-----+----------------------+   30 pixels high, as wide as the surface
namespace ListRow {

inline constexpr int kHeight = 30;
/// The ticks are left of this.
inline constexpr float kTickColumn = 30;

/// The states of a tick, as `udtModType::CheckState` numbers them.
inline constexpr std::int16_t kNotTicked = 0;
inline constexpr std::int16_t kTicked = 1;
inline constexpr std::int16_t kHalfTicked = 2;

/// What stands where there are no mods.
inline constexpr const char* kEmptyText = "Keine Mods in dieser Kategorie gefunden.";

struct RowColours {
  ColourNumber fill;
  ColourNumber name;
  ColourNumber second;
  ColourNumber tick;
};

/// A list's colours by the state of a row.
struct ListColours {
  RowColours selectedUnderMouse;
  RowColours selected;
  RowColours underMouse;
  RowColours plain;

  [[nodiscard]] const RowColours& Of(bool isSelected, bool isUnderMouse) const {
    if (isSelected) return isUnderMouse ? selectedUnderMouse : selected;
    return isUnderMouse ? underMouse : plain;
  }
};

inline constexpr ColourNumber kBack = 12957875;
const ListColours& TypeColours();
const ListColours& ModColours();

struct Content {
  QString name;
  QString second;
  std::int16_t tick;
};

/// Whether a row whose upper edge is there touches the surface.
bool Touches(const ListSurface& surface, int top);

/// Paints with the lists' fonts. Make it after `Fonts::Load`.
class Painter {
 public:
  Painter();
  void PaintRow(ListSurface& surface, int top, const RowColours& colours, const Content& row) const;
  void PaintEmptyText(ListSurface& surface) const;

 private:
  QFont name_;
  QFont text_;
  QFont tick_;
};

}  // namespace ListRow
