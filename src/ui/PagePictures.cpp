#include "ui/PagePictures.h"

#include <QPainter>
#include <QUrl>

#include "ui/PageLimits.h"

QSizeF PagePictures::intrinsicSize(QTextDocument* document, int /*place*/,
                                   const QTextFormat& format) {
  return SizeOf(*document, format.toImageFormat())
      .boundedTo({PageLimits::kLongest, PageLimits::kLongest});
}

void PagePictures::drawObject(QPainter* painter, const QRectF& box, QTextDocument* document,
                              int /*place*/, const QTextFormat& format) {
  const QImage picture = PictureOf(*document, format.toImageFormat());
  if (picture.isNull()) return;
  painter->save();
  painter->setRenderHint(QPainter::SmoothPixmapTransform, box.size() != picture.size());
  painter->drawImage(box, picture);
  painter->restore();
}

QSizeF PagePictures::SizeOf(const QTextDocument& document, const QTextImageFormat& image) {
  const bool hasWidth = image.hasProperty(QTextFormat::ImageWidth);
  const bool hasHeight = image.hasProperty(QTextFormat::ImageHeight);
  const QSizeF declared(image.width(), image.height());
  if (hasWidth && hasHeight) return declared;
  const QSizeF own = PictureOf(document, image).size();
  if (own.isEmpty()) return {hasWidth ? declared.width() : 0, hasHeight ? declared.height() : 0};
  if (hasWidth) return own * (declared.width() / own.width());
  if (hasHeight) return own * (declared.height() / own.height());
  return own;
}

QImage PagePictures::PictureOf(const QTextDocument& document, const QTextImageFormat& format) {
  return document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
}
