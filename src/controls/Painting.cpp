#include "controls/Painting.h"

#include <algorithm>

#include "controls/DevicePixels.h"
#include "controls/Fonts.h"

namespace {

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
  const SavedPainter saved(painter);
  const DevicePixels device(painter);
  painter.fillRect(device.Snap(box), colour);
}

void Frame(QPainter& painter, const QRectF& box, int width, const QColor& colour) {
  if (width < 1) return;
  const SavedPainter saved(painter);
  const DevicePixels device(painter);
  const QRect outer = device.Snap(box);
  const int line = std::max(1, qRound(width * device.Ratio()));
  if (2 * line >= std::min(outer.width(), outer.height())) {
    painter.fillRect(outer, colour);
    return;
  }
  const int sideHeight = outer.height() - 2 * line;
  const int right = outer.left() + outer.width() - line;
  const int bottom = outer.top() + outer.height() - line;
  painter.fillRect(outer.left(), outer.top(), outer.width(), line, colour);
  painter.fillRect(outer.left(), bottom, outer.width(), line, colour);
  painter.fillRect(outer.left(), outer.top() + line, line, sideHeight, colour);
  painter.fillRect(right, outer.top() + line, line, sideHeight, colour);
}

void DrawFocusRect(QPainter& painter, const QRectF& box) {
  const SavedPainter saved(painter);
  const DevicePixels device(painter);
  const QRect outer = device.Snap(box);
  if (outer.width() <= 0 || outer.height() <= 0) return;
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
  const int dot = std::max(1, qRound(device.Ratio()));
  const int columns = (outer.width() + dot - 1) / dot;
  const int rows = (outer.height() + dot - 1) / dot;
  for (int row = 0; row < rows; ++row) {
    const bool isEdgeRow = row == 0 || row == rows - 1;
    const int step = isEdgeRow || columns == 1 ? 1 : columns - 1;
    for (int column = 0; column < columns; column += step) {
      if ((row + column) % 2 != 0) continue;
      const QRect cell(outer.left() + column * dot, outer.top() + row * dot, dot, dot);
      painter.fillRect(cell & outer, Qt::white);
    }
  }
}

void DrawLabel(QPainter& painter, const QRect& box, const QFont& font, const QString& caption,
               const QColor& colour, bool isEnabled) {
  constexpr double kFaded = 0.65;  // a contrast of 3 at least, where the colour itself has 6
  const SavedPainter saved(painter);
  painter.setOpacity(isEnabled ? 1 : kFaded);
  painter.setPen(colour);
  Fonts::DrawCaption(painter, box, font, caption);
}

}  // namespace Painting
