#pragma once

#include <QPainter>
#include <QRect>
#include <QRectF>

class QPixmap;

/// A widget's area counted in whole pixels of the device it is painted on. At scale factors such
/// as 1.25 the toolkit's pixels begin and end in the middle of the device's; what is drawn here
/// begins and ends between two of them, so that edges stay sharp.
class DevicePixels {
 public:
  /// Lays the painter's coordinates on the device's pixels, (0, 0) being the one at the widget's
  /// upper left corner. Holds for as long as the painter isn't given another transformation.
  explicit DevicePixels(QPainter& painter);

  /// Device pixels to one of the toolkit's.
  [[nodiscard]] qreal Ratio() const { return toDevice_.m11(); }
  /// The device pixels that stand for a rectangle of the widget's. Rectangles that touch still
  /// do; an edge is never left out unless the device is coarser than the toolkit's pixels.
  [[nodiscard]] QRect Snap(const QRectF& area) const;
  /// Draws `part` of a picture (in the toolkit's pixels, as both rectangles are) over `area`.
  void Draw(QPainter& painter, const QRectF& area, const QPixmap& picture,
            const QRectF& part) const;

 private:
  QTransform toDevice_;  // from the widget's coordinates
  QPoint corner_;        // the widget's upper left corner on the device
};
