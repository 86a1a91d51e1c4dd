#include "controls/SizeGrip.h"

#include <QCursor>
#include <QEvent>
#include <QImage>
#include <QMdiArea>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWindow>
#include <algorithm>
#include <array>
#include <cmath>

#include "controls/DevicePixels.h"
#include "controls/Input.h"

namespace {

constexpr int kPictureSide = 16;
constexpr QRgb kBack = qRgb(159, 165, 181);
constexpr QRgb kLine = qRgb(221, 223, 230);

bool IsPlainForm(const QWidget* widget) {
  if (widget == nullptr || !widget->isWindow()) return false;
  return widget->findChild<QMdiArea*>(QString(), Qt::FindDirectChildrenOnly) == nullptr;
}

// Whether one of the three lines runs through a point of the 16 by 16 picture. They run from the
// lower edge up to the right one, and leave the outermost pixel of both free:
//
//   . . . . . . .
//   . . . . . / .
//   . . . . / . .
//   . . . / . / .
//   . . / . / . .
//   . . . . . . .
bool IsOnLine(double x, double y) {
  constexpr std::array<double, 3> kLines = {19, 23, 27};  // x + y of each
  constexpr double kHalfWidth = 0.7;
  constexpr double kEnd = kPictureSide - 1;
  if (x > kEnd || y > kEnd) return false;
  return std::any_of(kLines.begin(), kLines.end(),
                     [&](double line) { return std::abs(x + y - line) < kHalfWidth; });
}

// The picture with `side` pixels of the device to an edge; no pixel has a colour in between.
QImage DrawPicture(int side) {
  QImage picture(side, side, QImage::Format_RGB32);
  const double step = static_cast<double>(kPictureSide) / side;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      picture.setPixel(x, y, IsOnLine((x + 0.5) * step, (y + 0.5) * step) ? kLine : kBack);
    }
  }
  return picture;
}

}  // namespace

SizeGrip::SizeGrip(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);  // `MouseMove` comes with no button held, too
  TakeForm();
}

void SizeGrip::SetPicture(const QPixmap& picture) {
  picture_ = picture;
  update();
}

void SizeGrip::TakeForm() {
  if (QWidget* const former = eForm_) former->removeEventFilter(this);
  QWidget* const form = IsPlainForm(parentWidget()) ? parentWidget() : nullptr;
  eForm_ = form;
  if (form != nullptr) form->installEventFilter(this);
  setCursor(form != nullptr ? Qt::SizeFDiagCursor : Qt::ArrowCursor);
}

bool SizeGrip::eventFilter(QObject* watched, QEvent* event) {
  if (watched == eForm_ && event->type() == QEvent::Resize) Place();
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
  const QRect place = SizeGripGeometry::Corner(size(), {kPictureSide, kPictureSide});
  if (picture_.isNull()) {
    const QRect area = pixels.Snap(place);
    painter.drawImage(area.topLeft(), DrawPicture(area.width()));
  } else {
    pixels.Draw(painter, place, picture_, QRectF({0, 0}, picture_.deviceIndependentSize()));
  }
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
    SizeFrom(eForm_, event->globalPosition());
  }
}

void SizeGrip::DoSize(QWidget* AnyHwnd) {
  SizeFrom(AnyHwnd, QCursor::pos());
}

void SizeGrip::SizeFrom(QWidget* AnyHwnd, const QPointF& mouse) {
  if (AnyHwnd == nullptr) return;
  if (QWidget* const grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
  QWidget* const window = AnyHwnd->window();
  QWindow* const handle = window->windowHandle();
  if (handle != nullptr && handle->startSystemResize(Qt::RightEdge | Qt::BottomEdge)) return;
  dragged_ = window;
  draggedFrom_ = window->size();
  draggedAt_ = mouse;
  grabMouse();
}

void SizeGrip::EndDrag() {
  dragged_ = nullptr;
  releaseMouse();
}

void SizeGrip::FollowMouse(const QMouseEvent& event) {
  if (!event.buttons().testFlag(Qt::LeftButton)) return EndDrag();  // the release went elsewhere
  dragged_->resize(SizeGripGeometry::Dragged(draggedFrom_, event.globalPosition() - draggedAt_,
                                             dragged_->minimumSize(), dragged_->maximumSize()));
}

// During a drag the mouse belongs to it; nobody hears of its events.
void SizeGrip::mouseMoveEvent(QMouseEvent* event) {
  if (dragged_) {
    FollowMouse(*event);
  } else {
    Tell(&SizeGrip::MouseMove, event->buttons(), *event);
  }
}

void SizeGrip::mouseReleaseEvent(QMouseEvent* event) {
  if (!dragged_) {
    Tell(&SizeGrip::MouseUp, event->button(), *event);
  } else if (event->button() == Qt::LeftButton) {
    EndDrag();
  }
}

namespace SizeGripGeometry {

QRect Corner(const QSize& form, const QSize& grip) {
  return {QPoint(form.width() - grip.width(), form.height() - grip.height()), grip};
}

QSize Dragged(const QSize& start, const QPointF& way, const QSize& minimum, const QSize& maximum) {
  const QPoint moved = way.toPoint();
  return (start + QSize(moved.x(), moved.y())).expandedTo(minimum).boundedTo(maximum);
}

}  // namespace SizeGripGeometry
