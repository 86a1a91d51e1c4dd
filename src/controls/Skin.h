#pragma once

#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <utility>

/// The pictures of the skin, which the build renders from assets/ at one and at two pixels to the
/// point.
namespace Skin {

/// The picture of that name at the density of screens with `ratio` device pixels to a pixel. A
/// null pixmap if the skin has no such picture.
QPixmap Picture(const QString& name, qreal ratio = 1);

/// Size of that picture in pixels, without loading it.
QSize SizeOf(const QString& name);

/// A picture in which magenta (255, 0, 255) means transparent, with that taken out. To be done
/// before the picture is scaled: afterwards there are colours between magenta and the edge.
QPixmap WithoutMagenta(const QPixmap& picture);

}  // namespace Skin

/// A picture of the skin that goes with its window from screen to screen.
class SkinPicture {
 public:
  explicit SkinPicture(QString name) : name_(std::move(name)) {}
  /// The picture at the density of that screen, loaded anew when it isn't the last one's.
  const QPixmap& At(qreal ratio);

 private:
  QString name_;
  QPixmap picture_;
};
