#include "controls/Skin.h"

#include <QImageReader>
#include <QtGlobal>
#include <algorithm>

// In a static library the pictures are linked in only if somebody asks for them. The macro has to
// stand outside of any namespace.
static void InitSkinResource() {
  Q_INIT_RESOURCE(skin);
}

namespace {

// There are two densities for all screens.
bool IsFine(qreal ratio) {
  return ratio > 1;
}

}  // namespace

const QPixmap& SkinPicture::At(qreal ratio) {
  if (picture_.isNull() || IsFine(ratio) != IsFine(picture_.devicePixelRatio())) {
    picture_ = Skin::Picture(name_, ratio);
  }
  return picture_;
}

namespace Skin {

QPixmap Picture(const QString& name, qreal ratio) {
  InitSkinResource();
  constexpr qreal kFine = 2;
  const bool isFine = IsFine(ratio);
  QPixmap picture(":/skin/" + name + (isFine ? "@2x.png" : ".png"));
  if (isFine) picture.setDevicePixelRatio(kFine);
  return picture;
}

QSize SizeOf(const QString& name) {
  InitSkinResource();
  return QImageReader(":/skin/" + name + ".png").size();
}

QPixmap WithoutMagenta(const QPixmap& picture) {
  QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::replace(line, line + image.width(), qRgb(255, 0, 255), qRgba(0, 0, 0, 0));
  }
  return QPixmap::fromImage(image);
}

}  // namespace Skin
