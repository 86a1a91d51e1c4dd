#include "controls/CtrlScroller.h"

#include <QAccessible>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "controls/BarAccessibility.h"
#include "controls/DevicePixels.h"
#include "controls/Input.h"
#include "controls/Skin.h"
#include "controls/Twips.h"

namespace {

QSize SizeOf(const QPixmap& picture) {
  return picture.deviceIndependentSize().toSize();
}

}  // namespace

CtrlScroller::CtrlScroller(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
  BarAccessibility::Install();
}

void CtrlScroller::SetValue(std::int32_t value) {
  value_ = std::max(scale_.Min, std::min(scale_.Max, value));
  TellValue();
  PlaceHandle();
  Redraw();
}

void CtrlScroller::SetMax(std::int32_t max) {
  if (value_ > max) {
    value_ = max;
    TellValue();
  }
  scale_.Max = max;
  Redraw();
  scale_.RMax = max;
}

void CtrlScroller::SetMin(std::int32_t min) {
  scale_.Min = std::min(min, value_);
  Redraw();
  scale_.RMin = scale_.Min;
}

void CtrlScroller::SetBar(const QPixmap& picture) {
  bar_ = picture;
  picBar_ = Skin::WithoutMagenta(picture);
  Redraw();
}

void CtrlScroller::SetBarOver(const QPixmap& picture) {
  barOver_ = picture;
  picBarOver_ = Skin::WithoutMagenta(picture);
  Redraw();
}

void CtrlScroller::SetScrollBefore(const QPixmap& picture) {
  picScrBefore_ = picture;
  Redraw();
}

void CtrlScroller::SetScrollAfter(const QPixmap& picture) {
  picScrAfter_ = picture;
  Redraw();
}

void CtrlScroller::MoveTo(std::int32_t value) {
  if (!enabled_) return;
  SetValue(std::max(scale_.RMin, std::min(scale_.RMax, value)));
  emit Change();
}

// Only a size that really changes moves the handle: `Max` may have left it elsewhere on purpose.
void CtrlScroller::Redraw() {
  if (!picScrBefore_.isNull()) {
    const bool isOther = size() != SizeOf(picScrBefore_);
    setFixedSize(SizeOf(picScrBefore_));
    if (isOther) PlaceHandle();
  }
  update();
}

// The first showing ends the creation: pictures and value may have come in any order.
void CtrlScroller::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!pressed_ && !event->spontaneous()) PlaceHandle();
}

void CtrlScroller::PlaceHandle() {
  Handle() = ScrollerGeometry::HandleFromValue(Track(), scale_, value_);
}

ScrollerGeometry::Track CtrlScroller::Track() const {
  const QSize track = SizeOf(picScrBefore_);
  const QSize handle = SizeOf(picBar_);
  if (vertical_) return {track.height(), handle.height()};
  return {track.width(), handle.width()};
}

void CtrlScroller::FollowMouse(const QPointF& mouse) {
  Handle() = ScrollerGeometry::HandleFromMouse(Track(), vertical_ ? mouse.y() : mouse.x());
  const auto [value, limited] = ScrollerGeometry::ValueFromHandle(Track(), scale_, Handle());
  value_ = value;
  if (!vertical_ && !limited) emit Change();
  if (snap_) PlaceHandle();
  TellValue();
  emit Change();
  Redraw();
}

void CtrlScroller::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = true;
  mouseMoveEvent(event);
}

void CtrlScroller::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton) && pressed_ && enabled_) {
    FollowMouse(event->position());
  }
}

void CtrlScroller::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = false;
  Redraw();
  emit Click();
}

void CtrlScroller::keyPressEvent(QKeyEvent* event) {
  emit KeyDown(static_cast<std::int16_t>(Input::KeyCode(*event)),
               static_cast<std::int16_t>(Input::ShiftState(event->modifiers())));
  QWidget::keyPressEvent(event);
}

void CtrlScroller::dragEnterEvent(QDragEnterEvent* event) {
  if (isSignalConnected(QMetaMethod::fromSignal(&CtrlScroller::OLEDragDrop))) {
    event->acceptProposedAction();
  }
}

void CtrlScroller::dropEvent(QDropEvent* event) {
  // The toolkit numbers copy, move and link as the event does.
  std::int32_t effect = event->proposedAction();
  const QPointF place = event->position();
  emit OLEDragDrop(event->mimeData(), effect,
                   static_cast<std::int16_t>(Input::HeldButtons(event->buttons())),
                   static_cast<std::int16_t>(Input::ShiftState(event->modifiers())),
                   static_cast<float>(place.x()), static_cast<float>(place.y()));
  event->setDropAction(static_cast<Qt::DropAction>(effect));
  event->setAccepted(effect != Qt::IgnoreAction);
}

void CtrlScroller::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const DevicePixels pixels(painter);
  const auto draw = [&](const QPixmap& picture, const QRect& part, const QPoint& place) {
    const QRect there = part & QRect(QPoint(0, 0), SizeOf(picture));
    pixels.Draw(painter, there.translated(place), picture, there);
  };
  const QRect all(QPoint(0, 0), SizeOf(picScrBefore_));
  draw(picScrBefore_, all, {});

  const ScrollerGeometry::Track track = Track();
  const int middle = RoundToEven(Handle() + track.Handle / 2.0);
  const QRect after = vertical_ ? all.adjusted(0, middle, 0, 0) : all.adjusted(middle, 0, 0, 0);
  draw(picScrAfter_, after, {});

  const QPixmap& handle = pressed_ ? picBarOver_ : picBar_;
  draw(handle, QRect(QPoint(0, 0), SizeOf(handle)), {barLeft_, barTop_});
}

void CtrlScroller::TellValue() {
  QAccessibleValueChangeEvent event(this, value_);
  QAccessible::updateAccessibility(&event);
}

namespace ScrollerGeometry {

int HandleFromMouse(const Track& track, double mouse) {
  const double half = track.Handle / 2.0;
  double middle = RoundToEven(mouse);
  if (middle > track.Length - half) middle = track.Length - half;
  if (middle < half) middle = half;
  return RoundToEven(middle - half);
}

Reached ValueFromHandle(const Track& track, const Scale& scale, int handle) {
  const int way = track.Length - track.Handle;
  const double length = static_cast<double>(scale.Max) - scale.Min;
  const double raw = way > 0 ? static_cast<double>(handle) / way * length + scale.Min : scale.Min;
  if (raw < scale.RMin) return {scale.RMin, true};
  if (raw > scale.RMax) return {scale.RMax, true};
  return {RoundToEven(raw), false};
}

int HandleFromValue(const Track& track, const Scale& scale, std::int32_t value) {
  const int way = track.Length - track.Handle;
  if (scale.Max == scale.Min || way <= 0) return 0;
  const double length = static_cast<double>(scale.Max) - scale.Min;
  return RoundToEven((static_cast<double>(value) - scale.Min) / length * way);
}

}  // namespace ScrollerGeometry
