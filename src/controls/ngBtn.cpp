#include "controls/ngBtn.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "controls/DevicePixels.h"
#include "controls/Fonts.h"
#include "controls/Input.h"
#include "controls/Painting.h"
#include "controls/Twips.h"
#include "platform/window/hWndByMouse.h"

namespace {

constexpr int kTimerInterval = 15;  // milliseconds
constexpr int kPointerOfMouseIcon = 99;
constexpr int kStatesOfAPosition = 3;

using enum ngBtnState;

int NumberOf(ngBtnState state) {
  return static_cast<int>(state);
}

bool IsOnState(ngBtnState state) {
  return state <= kDownOn;
}

bool IsUpState(ngBtnState state) {
  return state == kUpOn || state == kUpOff;
}

// The same state of the mouse in the position that `state` is in.
ngBtnState InPositionOf(ngBtnState state, ngBtnState onState) {
  return IsOnState(state) ? onState : ngBtnState(NumberOf(onState) + kStatesOfAPosition);
}

struct Pointer {
  int number;
  Qt::CursorShape shape;
};

constexpr std::array<Pointer, 15> kPointers = {{
    {1, Qt::ArrowCursor},
    {2, Qt::CrossCursor},
    {3, Qt::IBeamCursor},
    {4, Qt::ArrowCursor},
    {5, Qt::SizeAllCursor},
    {6, Qt::SizeBDiagCursor},
    {7, Qt::SizeVerCursor},
    {8, Qt::SizeFDiagCursor},
    {9, Qt::SizeHorCursor},
    {10, Qt::UpArrowCursor},
    {11, Qt::WaitCursor},
    {12, Qt::ForbiddenCursor},
    {13, Qt::BusyCursor},
    {14, Qt::WhatsThisCursor},
    {15, Qt::SizeAllCursor},
}};

}  // namespace

ngBtn::ngBtn(QWidget* parent) : QWidget(parent) {
  for (StateSettings& settings : states_) settings.font = Fonts::Tahoma();
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  tmrOver_.setInterval(kTimerInterval);
  connect(&tmrOver_, &QTimer::timeout, this, &ngBtn::tmrOver_Timer);
  connect(this, &QObject::objectNameChanged, this, [this] { Draw(); });
}

// ---------------------------------------------------------------------------------- properties

std::size_t ngBtn::IndexOf(ngBtnState state) {
  return static_cast<std::size_t>(state) - 1;
}

void ngBtn::SetPicture(ngBtnState state, const QPixmap& picture) {
  states_[IndexOf(state)].picture = picture;
  Draw();
}

void ngBtn::SetStateFont(ngBtnState state, const QFont& value) {
  states_[IndexOf(state)].font = value;
  Draw();
}

void ngBtn::SetColour(ngBtnState state, ColourNumber value) {
  states_[IndexOf(state)].colour = value;
  Draw();
}

void ngBtn::SetHasCaptionOff(bool value) {
  hasCaptionOff_ = value;
  Draw();
}

void ngBtn::SetHasCaptionOn(bool value) {
  hasCaptionOn_ = value;
  Draw();
}

void ngBtn::SetExtended(bool value) {
  extended_ = value;
  Draw();
}

void ngBtn::SetHasFocusRect(bool value) {
  hasFocusRect_ = value;
  Draw();
}

void ngBtn::SetValue(bool value) {
  value_ = value;
  if (IsUpState(state_)) state_ = value ? kUpOn : kUpOff;
  Draw();
}

void ngBtn::SetCaption(const QString& value) {
  caption_ = value;
  Draw();
  Accessibility::NameChanged(this);
}

void ngBtn::SetMouseIcon(const QPixmap& value) {
  mouseIcon_ = value;
  ApplyMousePointer();
}

void ngBtn::SetMousePointer(std::int32_t value) {
  mousePointer_ = value;
  ApplyMousePointer();
}

void ngBtn::SetFocusDistance(std::int32_t pixels) {
  focusDistance_ = pixels;
  Draw();
}

void ngBtn::ApplyMousePointer() {
  const auto found = std::find_if(kPointers.begin(), kPointers.end(), [this](const Pointer& row) {
    return row.number == mousePointer_;
  });
  if (mousePointer_ == kPointerOfMouseIcon && !mouseIcon_.isNull()) {
    setCursor(QCursor(mouseIcon_));
  } else if (found != kPointers.end()) {
    setCursor(found->shape);
  } else {
    unsetCursor();
  }
}

// ------------------------------------------------------------------------------------- drawing

ngBtnParts ngBtn::Parts() const {
  const StateSettings& settings = Of(state_);
  const int labelHeight = Fonts::CaptionSize(settings.font, "#p").height();
  const int labelTop = RoundToEven((height() - labelHeight) / 2.0);
  return {.picture = QRect(QPoint(), settings.picture.deviceIndependentSize().toSize()),
          .lblCaption = QRect(0, labelTop, width(), labelHeight),
          .captionVisible = IsOnState(state_) ? hasCaptionOn_ : hasCaptionOff_,
          .ForeColor = settings.colour,
          .Font = settings.font};
}

void ngBtn::Draw() {
  update();
}

void ngBtn::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const double ratio = painter.deviceTransform().m11();
  if (std::exchange(paintedRatio_, ratio) != ratio) emit DensityChanged(ratio);
  const ngBtnParts parts = Parts();
  const QPixmap& picture = Of(state_).picture;
  painter.save();
  DevicePixels(painter).Draw(painter, parts.picture, picture,
                             QRectF(QPointF(), picture.deviceIndependentSize()));
  painter.restore();
  if (parts.captionVisible) {
    // Not clipped to its box: in the free fonts the dots of capitals stand above the line.
    Painting::DrawLabel(painter, parts.lblCaption, parts.Font, Caption(),
                        Colours::ToQColor(parts.ForeColor), isEnabled());
  }
  if (HasFocus_ && hasFocusRect_) {
    const int distance = focusDistance_;
    Painting::DrawFocusRect(painter, rect().adjusted(distance, distance, -distance, -distance));
  }
}

// ------------------------------------------------------------------------------- state machine

bool ngBtn::IsPressed() const {
  return state_ == kDownOn || state_ == kDownOff;
}

void ngBtn::GoTo(ngBtnState state) {
  const bool wasPressed = IsPressed();
  state_ = state;
  Draw();
  if (wasPressed != IsPressed()) Accessibility::PressedChanged(this);
}

bool ngBtn::IsUnderCursor() const {
  return hWndByMouse() == this;
}

void ngBtn::mousePressEvent(QMouseEvent* event) {
  const int button = Input::ButtonNumber(event->button());
  if (button == Input::kNoButton) return event->ignore();
  if (button == Input::kLeftButton && (state_ == kOverOn || state_ == kOverOff)) {
    GoTo(InPositionOf(state_, kDownOn));
  }
  LastButton_ = button;
  const QPointF place = event->position();
  emit MouseDown(button, Input::ShiftState(event->modifiers()), static_cast<float>(place.x()),
                 static_cast<float>(place.y()));
}

// The second press of a double click is no mouse-down of its own, but looks like one.
void ngBtn::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
  if (LastButton_ == Input::kLeftButton && !IsUpState(state_)) GoTo(InPositionOf(state_, kDownOn));
}

void ngBtn::mouseMoveEvent(QMouseEvent* event) {
  const QPointer<ngBtn> self(this);
  if (!MouseIsOver_) {
    MouseIsOver_ = true;
    emit MouseEnter();
    if (!self) return;
  }
  if (IsUpState(state_)) {
    if (!IsUnderCursor()) return;
    const bool isLeftHeld = event->buttons().testFlag(Qt::LeftButton);
    GoTo(InPositionOf(state_, isLeftHeld ? kDownOn : kOverOn));
    tmrOver_.start();
  }
  const QPointF place = event->position();
  emit MouseMove(Input::HeldButtons(event->buttons()), Input::ShiftState(event->modifiers()),
                 static_cast<float>(place.x()), static_cast<float>(place.y()));
}

void ngBtn::tmrOver_Timer() {
  if (IsUnderCursor()) return;
  GoTo(InPositionOf(state_, kUpOn));
  tmrOver_.stop();
  MouseIsOver_ = false;
  emit MouseLeave();
}

// Takes a pressed button that the mouse is still over to its other position.
void ngBtn::Toggle(bool isOver) {
  if (IsPressed()) {
    const ngBtnState other = IsOnState(state_) ? kOverOff : kOverOn;
    GoTo(isOver ? other : InPositionOf(state_, kUpOn));
  }
  value_ = IsOnState(state_);
}

void ngBtn::mouseReleaseEvent(QMouseEvent* event) {
  if (Input::ButtonNumber(event->button()) == Input::kNoButton) return event->ignore();
  const bool isOver = IsUnderCursor();
  if (extended_) {
    Toggle(isOver);
  } else if (IsPressed()) {
    GoTo(InPositionOf(state_, isOver ? kOverOn : kUpOn));
  }
  Draw();
  const QPointer<ngBtn> self(this);
  const bool isLeft = event->button() == Qt::LeftButton;
  const QPointF place = event->position();
  emit MouseUp(Input::ButtonNumber(event->button()), Input::ShiftState(event->modifiers()),
               static_cast<float>(place.x()), static_cast<float>(place.y()));
  if (self && isLeft && IsUnderCursor()) emit Click();
}

void ngBtn::Press() {
  if (extended_) {
    GoTo(ngBtnState(NumberOf(state_) + (IsOnState(state_) ? 1 : -1) * kStatesOfAPosition));
    value_ = IsOnState(state_);
  }
  emit Click();
}

void ngBtn::focusInEvent(QFocusEvent* /*event*/) {
  HasFocus_ = true;
  Draw();
}

void ngBtn::focusOutEvent(QFocusEvent* /*event*/) {
  HasFocus_ = false;
  Draw();
}
