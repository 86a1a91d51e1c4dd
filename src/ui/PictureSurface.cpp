#include "ui/PictureSurface.h"

#include <QPainter>

#include "controls/DevicePixels.h"

PictureSurface::PictureSurface(const QColor& background, QWidget* parent)
    : QWidget(parent), background_(background) {
  QPalette colours = palette();
  colours.setColor(QPalette::Window, background);
  setPalette(colours);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureSurface::SetPicture(const QPixmap& picture) {
  picture_ = picture;
  update();
}

void PictureSurface::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const DevicePixels device(painter);
  if (!picture_.isNull() && !qFuzzyCompare(picture_.devicePixelRatio(), device.Ratio())) {
    emit RatioChanged(device.Ratio());
  }
  const QRect area = device.Snap(rect());
  painter.fillRect(area, background_);
  painter.setClipRect(area);
  painter.drawPixmap(QRect(QPoint(), picture_.size()), picture_);
}
