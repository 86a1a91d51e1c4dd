#include "controls/tc_PBar.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/BarAccessibility.h"
#include "controls/DevicePixels.h"
#include "controls/Fonts.h"
#include "controls/Painting.h"
#include "controls/Twips.h"
#include "platform/Failure.h"

namespace {

constexpr ColourNumber kWhite = 16777215;
constexpr float kWhole = 100.0F;

// Inverting is taking the difference to white: done twice, what lay there is back.
void Invert(QPainter& painter, const QRect& area) {
  painter.setCompositionMode(QPainter::CompositionMode_Difference);
  Painting::Fill(painter, area, Qt::white);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

}  // namespace

tc_PBar::tc_PBar(QWidget* parent)
    : QWidget(parent),
      back_(Colours::CalcMiddleColor(Colours::GetSysColor(Colours::kButtonFace), kWhite, 50)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  BarAccessibility::Install();
}

void tc_PBar::SetValue(std::int16_t intData) {
  if (intData > max_) return;
  if (intData < min_) {
    throw Failure("'Value' muss im Bereich zwischen 'Min' und 'Max' liegen.", kBelowRange);
  }
  value_ = intData;
  Redraw();
  TellValue();
}

void tc_PBar::SetMax(std::int16_t intData) {
  max_ = intData;
  value_ = 0;
  Redraw();
  TellValue();
}

void tc_PBar::SetMin(std::int16_t intData) {
  min_ = intData;
  Redraw();
}

void tc_PBar::Redraw() {
  if (min_ == 0 && max_ == 0) return;
  if (min_ == max_) Fail("a progress bar's range from ", min_, " to ", max_, " is empty");
  percent_ = PBarGeometry::Percent(value_, min_, max_);
  update();
}

QString tc_PBar::Text() const {
  return percent_ ? PBarGeometry::PercentText(*percent_, QLocale::system()) : QString();
}

void tc_PBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  update();
}

void tc_PBar::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // Whoever has set an empty range has been told so.
  if (min_ != max_) Redraw();
}

void tc_PBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const DevicePixels pixels(painter);
  painter.drawImage(QPoint(0, 0), Picture(pixels.Snap(rect()).size(), pixels.Ratio()));
}

// The picture in device pixels, `ratio` of them to one of the toolkit's.
QImage tc_PBar::Picture(const QSize& devicePixels, qreal ratio) const {
  QImage picture(devicePixels, QImage::Format_RGB32);
  picture.fill(Colours::ToQColor(back_));
  if (!percent_) return picture;

  const float bar = PBarGeometry::BarWidth(width(), *percent_);
  const QRect inverted = PBarGeometry::InvertBox(size(), bar);
  QPainter painter(&picture);
  painter.scale(ratio, ratio);
  Painting::Frame(painter, QRectF({0, 0}, QSizeF(devicePixels) / ratio), 1,
                  Colours::ToQColor(Colours::GetSysColor(Colours::kButtonShadow, palette())));
  if (*percent_ != 0) {
    Painting::Fill(painter, PBarGeometry::FillBox(size(), bar),
                   Colours::ToQColor(Colours::GetSysColor(Colours::kHighlight, palette())));
  }
  Invert(painter, inverted);
  PrintText(painter, ratio);
  Invert(painter, inverted);
  painter.end();
  return picture;
}

void tc_PBar::PrintText(QPainter& painter, qreal ratio) const {
  const QFont font = Fonts::Tahoma();
  const QFontMetricsF metrics(font);
  const QString text = Text();
  const QPointF place =
      PBarGeometry::TextPlace(size(), QSizeF(metrics.horizontalAdvance(text), metrics.height()));
  painter.setFont(font);
  painter.setPen(Qt::white);
  // A line of text starts on a whole pixel of the device.
  const QPointF base = place + QPointF(0, metrics.ascent());
  painter.drawText((base * ratio).toPoint().toPointF() / ratio, text);
}

void tc_PBar::TellValue() {
  if (std::exchange(toldPercent_, WholePercent()) == WholePercent()) return;
  QAccessibleValueChangeEvent event(this, static_cast<int>(value_));
  QAccessible::updateAccessibility(&event);
}

namespace PBarGeometry {

std::optional<float> Percent(int value, int min, int max) {
  if (max == min) return std::nullopt;
  const double percent = 100.0 / (max - min) * (value - min);
  return static_cast<float>(percent) + 0.0F;  // never the zero with a sign
}

QString PercentText(float percent, const QLocale& locale) {
  QLocale format = locale;
  format.setNumberOptions(QLocale::OmitGroupSeparator);
  const double rounded = std::round(static_cast<double>(percent) * 100.0) / 100.0;
  return format.toString(rounded, 'f', 2) + QLatin1Char('%');
}

float BarWidth(int width, float percent) {
  return static_cast<float>(width) / kWhole * percent;
}

QRect FillBox(const QSize& surface, float bar) {
  const auto [left, right] = std::minmax({1, RoundToEven(bar - 2)});
  const auto [top, bottom] = std::minmax({1, surface.height() - 2});
  return {QPoint(left, top), QPoint(right, bottom)};
}

QRect InvertBox(const QSize& surface, float bar) {
  const int left = RoundToEven(bar - 1);
  return {left, 0, std::max(0, surface.width() - left), surface.height()};
}

QPointF TextPlace(const QSize& surface, const QSizeF& text) {
  return {(surface.width() - text.width()) / 2, (surface.height() - text.height()) / 2};
}

}  // namespace PBarGeometry
