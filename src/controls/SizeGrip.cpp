#include "controls/SizeGrip.h"

#include <QCursor>
#include <QEvent>
#include <QMdiArea>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <utility>

#include "controls/DevicePixels.h"
#include "controls/Input.h"

namespace {

constexpr int kPictureSide = 16;
constexpr QRgb kBack = qRgb(159, 165, 181);

bool IsPlainForm(const QWidget* widget) {
  if (widget == nullptr || !widget->isWindow()) return false;
  return widget->findChild<QMdiArea*>(QString(), Qt::FindDirectChildrenOnly) == nullptr;
}

}  // namespace

SizeGrip::SizeGrip(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);  // `MouseMove` comes with no button held, too
  TakeForm();
}

void SizeGrip::TakeForm() {
  if (QWidget* const former = eForm_) former->removeEventFilter(this);
  QWidget* const form = IsPlainForm(parentWidget()) ? parentWidget() : nullptr;
  eForm_ = form;
  if (form != nullptr) form->installEventFilter(this);
  ShowCursor();
}

void SizeGrip::ShowCursor() {
  const bool canSize = eForm_ && !eForm_->isMaximized() && !eForm_->isFullScreen();
  setCursor(canSize ? Qt::SizeFDiagCursor : Qt::ArrowCursor);
}

bool SizeGrip::eventFilter(QObject* watched, QEvent* event) {
  if (watched != eForm_) return false;
  if (event->type() == QEvent::Resize) Place();
  if (event->type() == QEvent::WindowStateChange) ShowCursor();
  return false;
}

// Whatever moves the grip, puts it in front or changes the style has it place itself again.
bool SizeGrip::event(QEvent* event) {
  const bool result = QWidget::event(event);
  switch (event->type()) {
    case QEvent::ParentChange:
      TakeForm();
      break;
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ZOrderChange:
    case QEvent::StyleChange:
      Place();
      break;
    default:
      break;
  }
  return result;
}

void SizeGrip::Place() {
  if (placing_) return;
  placing_ = true;
  if (autoZOrder_) lower();
  const bool isChanged = TakeMetrics();
  const QSize grip(vScrollWidth_, hScrollHeight_);
  if (const QWidget* const form = eForm_) {
    setGeometry(SizeGripGeometry::Corner(form->size(), grip));
  } else {
    resize(grip);
  }
  placing_ = false;
  if (isChanged) emit ScrollbarSizeChanged(vScrollWidth_, hScrollHeight_);
}

bool SizeGrip::TakeMetrics() {
  const std::int32_t extent = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  const bool isChanged = extent != vScrollWidth_ || extent != hScrollHeight_;
  vScrollWidth_ = extent;
  hScrollHeight_ = extent;
  return isChanged;
}

void SizeGrip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const DevicePixels pixels(painter);
  painter.fillRect(pixels.Snap(rect()), QColor(kBack));
  const QPixmap& picture = picture_.At(pixels.Ratio());
  pixels.Draw(painter, SizeGripGeometry::Corner(size(), {kPictureSide, kPictureSide}), picture,
              QRectF({0, 0}, picture.deviceIndependentSize()));
}

void SizeGrip::Tell(MouseSignal signal, Qt::MouseButtons buttons, const QMouseEvent& event) {
  const QPointF place = event.position();
  emit(this->*signal)(static_cast<std::int16_t>(Input::HeldButtons(buttons)),
                      static_cast<std::int16_t>(Input::ShiftState(event.modifiers())),
                      static_cast<float>(place.x()), static_cast<float>(place.y()));
}

void SizeGrip::mousePressEvent(QMouseEvent* event) {
  if (!eForm_) {
    Tell(&SizeGrip::MouseDown, event->button(), *event);
  } else if (event->button() == Qt::LeftButton) {
    hasTakenCorner_ = true;
    SizeFrom(eForm_, event->globalPosition());
  }
}

void SizeGrip::DoSize(QWidget* AnyHwnd) {
  SizeFrom(AnyHwnd, QCursor::pos());
}

void SizeGrip::SizeFrom(QWidget* AnyHwnd, const QPointF& mouse) {
  if (AnyHwnd == nullptr) return;
  drag_.Start(AnyHwnd->window(), Qt::RightEdge | Qt::BottomEdge, Qt::LeftButton, mouse);
}

void SizeGrip::mouseMoveEvent(QMouseEvent* event) {
  Tell(&SizeGrip::MouseMove, event->buttons(), *event);
}

// The release of a press that has taken the window's corner is the drag's.
void SizeGrip::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && std::exchange(hasTakenCorner_, false)) return;
  Tell(&SizeGrip::MouseUp, event->button(), *event);
}

namespace SizeGripGeometry {

QRect Corner(const QSize& form, const QSize& grip) {
  return {QPoint(form.width() - grip.width(), form.height() - grip.height()), grip};
}

}  // namespace SizeGripGeometry
