#include "controls/DevicePixels.h"

#include <QPixmap>

namespace {

// Whether each pixel of the picture covers the same whole number of device pixels.
bool IsWholeMultiple(const QSizeF& part, const QSize& target) {
  const double across = target.width() / part.width();
  const double down = target.height() / part.height();
  return qFuzzyCompare(across, down) && qFuzzyCompare(across, qRound(across));
}

}  // namespace

DevicePixels::DevicePixels(QPainter& painter)
    : toDevice_(painter.deviceTransform()), corner_(toDevice_.map(QPointF(0, 0)).toPoint()) {
  const QTransform toCorner = QTransform::fromTranslate(corner_.x(), corner_.y());
  painter.setWorldTransform(toCorner * toDevice_.inverted() * painter.worldTransform());
}

QRect DevicePixels::Snap(const QRectF& area) const {
  const QPoint from = toDevice_.map(area.topLeft()).toPoint() - corner_;
  const QPoint to = toDevice_.map(area.bottomRight()).toPoint() - corner_;
  return {from, QSize(to.x() - from.x(), to.y() - from.y())};
}

void DevicePixels::Draw(QPainter& painter, const QRectF& area, const QPixmap& picture,
                        const QRectF& part) const {
  const qreal own = picture.devicePixelRatio();
  const QRectF source(part.topLeft() * own, part.size() * own);
  const QRect target = Snap(area);
  if (source.isEmpty() || target.isEmpty()) return;
  painter.setRenderHint(QPainter::SmoothPixmapTransform,
                        !IsWholeMultiple(source.size(), target.size()));
  painter.drawPixmap(QRectF(target), picture, source);
}
