#pragma once

#include <QImage>
#include <QWidget>
#include <cmath>

/// The widget as it is painted on a screen of this device pixel ratio; pixels nobody paints are
/// fully transparent.
inline QImage RenderedAt(QWidget& widget, qreal ratio) {
  QImage image(static_cast<int>(std::ceil(widget.width() * ratio)),
               static_cast<int>(std::ceil(widget.height() * ratio)),
               QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  widget.render(&image);
  return image;
}
