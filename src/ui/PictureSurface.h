#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>

/// A surface that shows a bitmap from its upper left corner on, pixel by pixel of the screen, and
/// its background colour where there is none.
class PictureSurface : public QWidget {
  Q_OBJECT

 public:
  PictureSurface(const QColor& background, QWidget* parent);

  [[nodiscard]] const QPixmap& Picture() const { return picture_; }
  void SetPicture(const QPixmap& picture);

 signals:
  /// The surface is being painted on a screen for which the bitmap isn't made, with that many of
  /// its pixels to one of the toolkit's. Whoever hears it may set another bitmap.
  void RatioChanged(qreal ratio);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor background_;
  QPixmap picture_;
};
