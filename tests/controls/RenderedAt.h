#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <cmath>

#include "controls/Colours.h"

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

inline ColourNumber ColourAt(const QImage& image, int x, int y) {
  return Colours::FromQColor(image.pixelColor(x, y));
}

/// How many pixels of a widget's picture are of this colour.
inline int CountOf(ColourNumber colour, QWidget& widget) {
  const QImage image = RenderedAt(widget, 1);
  int found = 0;
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) found += ColourAt(image, x, y) == colour ? 1 : 0;
  }
  return found;
}

inline QPixmap PlainPicture(QSize size, const QColor& colour) {
  QPixmap picture(size);
  picture.fill(colour);
  return picture;
}
