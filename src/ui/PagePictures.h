#pragma once

#include <QImage>
#include <QObject>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextObjectInterface>

/// Measures and draws the pictures in the text of a document: from its resources, in the size that
/// the page declares, and with what it doesn't declare from the picture. Sizes in pixels.
class PagePictures : public QObject, public QTextObjectInterface {
  Q_OBJECT
  Q_INTERFACES(QTextObjectInterface)

 public:
  using QObject::QObject;

  QSizeF intrinsicSize(QTextDocument* document, int place, const QTextFormat& format) override;
  void drawObject(QPainter* painter, const QRectF& box, QTextDocument* document, int place,
                  const QTextFormat& format) override;

 private:
  static QSizeF SizeOf(const QTextDocument& document, const QTextImageFormat& image);
  static QImage PictureOf(const QTextDocument& document, const QTextImageFormat& format);
};
