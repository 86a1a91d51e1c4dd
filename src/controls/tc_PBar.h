#pragma once

#include <QLocale>
#include <QPointF>
#include <QRect>
#include <QSizeF>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <optional>

#include "controls/Colours.h"

/// A flat progress bar: it fills from the left and prints the percentage in its middle, white on
/// the bar and inverted where the bar doesn't reach.
///
/// The order of setting matters: `Max` puts `Value` back to 0.
class tc_PBar : public QWidget {
  Q_OBJECT

 public:
  /// What a position below the range fails with.
  static constexpr int kBelowRange = static_cast<int>(0x800403E9U);

  explicit tc_PBar(QWidget* parent = nullptr);

  [[nodiscard]] std::int16_t Value() const { return value_; }
  /// Moves the bar. A position above `Max` is ignored; one below `Min` is a `Failure` with the
  /// number `kBelowRange`.
  void SetValue(std::int16_t intData);
  [[nodiscard]] std::int16_t Max() const { return max_; }
  /// Sets the top of the range, and the position to 0 without any test of the range.
  void SetMax(std::int16_t intData);
  [[nodiscard]] std::int16_t Min() const { return min_; }
  /// Sets the bottom of the range; the position stays.
  void SetMin(std::int16_t intData);

  /// Takes the position over into the picture; it is painted with the next frame, however often
  /// this is called. With both ends of the range at 0 the picture stays as it is; any other empty
  /// range, which has no percentage, is a `Failure`, here and in the setters of the range.
  void Redraw();
  /// The control as a window.
  [[nodiscard]] QWidget* hWnd() { return this; }
  /// The percentage as the picture shows it; empty as long as nothing was drawn.
  [[nodiscard]] QString Text() const;
  /// The percentage without its decimals, as screen readers are told it: only when it changes.
  [[nodiscard]] int WholePercent() const { return percent_ ? static_cast<int>(*percent_) : 0; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  [[nodiscard]] QImage Picture(const QSize& devicePixels, qreal ratio) const;
  void PrintText(QPainter& painter, qreal ratio) const;
  void TellValue();

  std::int16_t value_ = 0;
  std::int16_t max_ = 100;
  std::int16_t min_ = 0;
  std::optional<float> percent_;  // what the picture shows
  int toldPercent_ = 0;           // to screen readers
  ColourNumber back_;             // the surface's, mixed once
};

/// The bar's arithmetic. Lengths are pixels.
namespace PBarGeometry {

/// Where `value` stands in the range, 0 at `min` and 100 at `max`; nothing for an empty range.
std::optional<float> Percent(int value, int min, int max);
/// Two decimals and a percent sign, in the number format of `locale`.
QString PercentText(float percent, const QLocale& locale);
/// The part of `width` that is `percent` of it.
float BarWidth(int width, float percent);
/// The filled box: from (1, 1) to two pixels left of the bar's end, both corners included and in
/// whatever order they come. It may reach beyond the surface.
QRect FillBox(const QSize& surface, float bar);
/// What is inverted around the printing of the text: all right of the bar's last pixel.
QRect InvertBox(const QSize& surface, float bar);
/// Upper left corner of a text of this size, centred.
QPointF TextPlace(const QSize& surface, const QSizeF& text);

}  // namespace PBarGeometry
