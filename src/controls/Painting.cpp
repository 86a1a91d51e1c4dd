#include "controls/Painting.h"

#include <algorithm>
#include <cmath>

#include "controls/Colours.h"
#include "controls/Fonts.h"

namespace {

// The pixels of the screen under a painter. A painter of a widget maps pixels of the layout to
// them by a scale factor, such as 1.25, and by the widget's place.
class ScreenPixels {
 public:
  explicit ScreenPixels(QPainter& painter)
      : painter_(painter), toScreen_(painter.deviceTransform()), toLayout_(toScreen_.inverted()) {}

  [[nodiscard]] double Scale() const { return toScreen_.m11(); }

  [[nodiscard]] QRect Of(const QRectF& box) const {
    const QRectF mapped = toScreen_.mapRect(box);
    const QPoint corner(qRound(mapped.left()), qRound(mapped.top()));
    const QPoint end(qRound(mapped.right()), qRound(mapped.bottom()));
    return {corner, QSize(end.x() - corner.x(), end.y() - corner.y())};
  }

  void Fill(const QRect& pixels, const QColor& colour) {
    painter_.fillRect(toLayout_.mapRect(QRectF(pixels)), colour);
  }

 private:
  QPainter& painter_;
  QTransform toScreen_;
  QTransform toLayout_;
};

// Restores the painter when a drawing ends.
class SavedPainter {
 public:
  explicit SavedPainter(QPainter& painter) : painter_(painter) { painter_.save(); }
  ~SavedPainter() { painter_.restore(); }
  SavedPainter(const SavedPainter&) = delete;
  SavedPainter& operator=(const SavedPainter&) = delete;
  SavedPainter(SavedPainter&&) = delete;
  SavedPainter& operator=(SavedPainter&&) = delete;

 private:
  QPainter& painter_;
};

}  // namespace

namespace Painting {

void Fill(QPainter& painter, const QRectF& box, const QColor& colour) {
  ScreenPixels screen(painter);
  screen.Fill(screen.Of(box), colour);
}

void Frame(QPainter& painter, const QRectF& box, int width, const QColor& colour) {
  ScreenPixels screen(painter);
  const QRect outer = screen.Of(box);
  const int line = std::max(1, qRound(width * screen.Scale()));
  if (width < 1) return;
  if (2 * line >= std::min(outer.width(), outer.height())) {
    screen.Fill(outer, colour);
    return;
  }
  const int sideHeight = outer.height() - 2 * line;
  const int right = outer.left() + outer.width() - line;
  const int bottom = outer.top() + outer.height() - line;
  screen.Fill({outer.left(), outer.top(), outer.width(), line}, colour);
  screen.Fill({outer.left(), bottom, outer.width(), line}, colour);
  screen.Fill({outer.left(), outer.top() + line, line, sideHeight}, colour);
  screen.Fill({right, outer.top() + line, line, sideHeight}, colour);
}

void DrawFocusRect(QPainter& painter, const QRectF& box) {
  ScreenPixels screen(painter);
  const QRect outer = screen.Of(box);
  if (outer.width() <= 0 || outer.height() <= 0) return;
  const SavedPainter saved(painter);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
  const int dot = std::max(1, qRound(screen.Scale()));
  const int columns = (outer.width() + dot - 1) / dot;
  const int rows = (outer.height() + dot - 1) / dot;
  for (int row = 0; row < rows; ++row) {
    const bool isEdgeRow = row == 0 || row == rows - 1;
    const int step = isEdgeRow || columns == 1 ? 1 : columns - 1;
    for (int column = 0; column < columns; column += step) {
      if ((row + column) % 2 != 0) continue;
      const QRect cell(outer.left() + column * dot, outer.top() + row * dot, dot, dot);
      screen.Fill(cell & outer, Qt::white);
    }
  }
}

void DrawLabel(QPainter& painter, const QRect& box, const QFont& font, const QString& caption,
               const QColor& colour, bool isEnabled) {
  if (!isEnabled) {
    painter.setPen(Colours::ToQColor(Colours::GetSysColor(Colours::kButtonHighlight)));
    Fonts::DrawCaption(painter, box.translated(1, 1), font, caption);
  }
  painter.setPen(isEnabled ? colour : Colours::ToQColor(Colours::GetSysColor(Colours::kGrayText)));
  Fonts::DrawCaption(painter, box, font, caption);
}

}  // namespace Painting
