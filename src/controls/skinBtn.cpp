#include "controls/skinBtn.h"

#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/Fonts.h"
#include "controls/Input.h"
#include "controls/Painting.h"
#include "controls/Twips.h"
#include "platform/window/hWndByMouse.h"

namespace {

constexpr int kSmallestSide = 120;    // twips
constexpr int kShadowShare = 3;       // the shadow takes a third of the shorter side at most
constexpr int kFirstTick = 1;         // milliseconds
constexpr int kFrame = 17;            // the same
constexpr int kShiftOfSpaceKey = -1;  // marks a release that the space key made up
constexpr int kEnterKey = 13;
constexpr double kCornerShare = 0.25;  // radius of a rounded corner, of the shorter side

QRect PixelBox(const QRectF& twips) {
  return {ToPixels(twips.left()), ToPixels(twips.top()), ToPixels(twips.width()),
          ToPixels(twips.height())};
}

bool IsAsWideAsHigh(int kind) {
  return kind == skinBtn::kSquare || kind == skinBtn::kCircle || kind == skinBtn::kRoundedSquare;
}

QRect CentredSquare(const QRect& box) {
  const int side = std::min(box.width(), box.height());
  return {box.left() + (box.width() - side) / 2, box.top() + (box.height() - side) / 2, side, side};
}

void PaintRound(QPainter& painter, const skinBtnParts::ShapeElement& shape, const QRect& box,
                bool isOval) {
  const double line = shape.BorderStyle != 0 ? shape.BorderWidth : 0;
  const double inset = line / 2;
  const QRectF outline = QRectF(box).adjusted(inset, inset, -inset, -inset);
  const double radius = std::min(box.width(), box.height()) * kCornerShare;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(shape.BackStyle != 0 ? QBrush(Colours::ToQColor(shape.BackColor)) : Qt::NoBrush);
  painter.setPen(line > 0 ? QPen(Colours::ToQColor(shape.BorderColor), line) : Qt::NoPen);
  if (isOval) {
    painter.drawEllipse(outline);
  } else {
    painter.drawRoundedRect(outline, radius, radius);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void PaintShape(QPainter& painter, const skinBtnParts::ShapeElement& shape, int kind) {
  QRect box = PixelBox(shape.Box);
  if (shape.BorderStyle == 0) box.adjust(0, 0, -1, -1);
  if (IsAsWideAsHigh(kind)) box = CentredSquare(box);
  if (box.isEmpty()) return;
  const bool isOval = kind == skinBtn::kOval || kind == skinBtn::kCircle;
  if (isOval || kind == skinBtn::kRoundedRectangle || kind == skinBtn::kRoundedSquare) {
    PaintRound(painter, shape, box, isOval);
    return;
  }
  if (shape.BackStyle != 0) Painting::Fill(painter, box, Colours::ToQColor(shape.BackColor));
  if (shape.BorderStyle != 0) {
    Painting::Frame(painter, box, shape.BorderWidth, Colours::ToQColor(shape.BorderColor));
  }
}

}  // namespace

skinBtn::skinBtn(QWidget* parent)
    : QWidget(parent),
      // Colours of face, frame, shadow and caption.
      looks_({{
          {.backColor = 4336663, .frameColor = 4336663, .shadowColor = 0, .foreColor = 12632256},
          {.backColor = 8082219, .frameColor = 3656959, .shadowColor = 0, .foreColor = 3656959},
          {.backColor = 6833700, .frameColor = 16777215, .shadowColor = 0, .foreColor = 3656959},
      }}) {
  for (LookSettings& settings : looks_) settings.font = Fonts::Tahoma();
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(ToPixels(kSmallestSide), ToPixels(kSmallestSide));
  connect(&Timer1_, &QTimer::timeout, this, &skinBtn::Timer1_Timer);
  connect(this, &QObject::objectNameChanged, this, [this] { CentreCaption(); });
  Resize();
  Normal(false);
}

// ---------------------------------------------------------------------------------- properties

void skinBtn::SetBackColorNormal(ColourNumber value) {
  looks_[kNormal].backColor = value;
  if (LookNormal()) parts_.back.BackColor = value;
  update();
}

void skinBtn::SetFrameColorNormal(ColourNumber value) {
  looks_[kNormal].frameColor = value;
  if (LookNormal()) parts_.back.BorderColor = value;
  update();
}

void skinBtn::SetShadowColorNormal(ColourNumber value) {
  looks_[kNormal].shadowColor = value;
  Normal(true);
}

void skinBtn::SetForeColorNormal(ColourNumber value) {
  looks_[kNormal].foreColor = value;
  if (LookNormal()) parts_.btn.ForeColor = value;
  update();
}

void skinBtn::SetBorderStyleNormal(std::int32_t value) {
  looks_[kNormal].borderStyle = value;
  if (LookNormal()) parts_.back.BorderStyle = value;
  update();
}

void skinBtn::SetLookFont(Look look, const QFont& value) {
  looks_[look].font = value;
  if (look_ == look) parts_.btn.Font = value;
  CentreCaption();
}

void skinBtn::SetShape(std::int32_t kind) {
  shape_ = kind;
  update();
}

void skinBtn::SetCaption(const QString& value) {
  caption_ = value;
  CentreCaption();
  Accessibility::NameChanged(this);
}

std::int16_t skinBtn::ShadowDistance() const {
  const int bound = std::min(width(), height()) / kShadowShare;
  return static_cast<std::int16_t>(std::min<int>(shadowDistance_, bound));
}

void skinBtn::SetShadowDistance(std::int16_t pixels) {
  shadowDistance_ = std::max<std::int16_t>(pixels, 0);
  Resize();
}

void skinBtn::SetShadowVisible(bool value) {
  shadowVisible_ = value;
  update();
}

ColourNumber skinBtn::BackColor() const {
  const QPalette& around = parentWidget() != nullptr ? parentWidget()->palette() : palette();
  return backColor_.value_or(Colours::FromQColor(around.color(QPalette::Window)));
}

void skinBtn::SetBackColor(ColourNumber value) {
  backColor_ = value;
  update();
}

void skinBtn::SetEnabled(bool value) {
  const bool isOther = std::exchange(enabled_, value) != value;
  // Tabbing then skips the control. Focus that is given to it by name is passed on when it comes.
  setFocusPolicy(value ? Qt::StrongFocus : Qt::NoFocus);
  if (autoDrawButton_) Normal(true);
  update();
  if (isOther) Accessibility::UsableChanged(this);
}

void skinBtn::SetAutoDrawButton(bool value) {
  autoDrawButton_ = value;
  update();
}

void skinBtn::SetDrawFocusRect(bool value) {
  drawFocusRect_ = value;
  update();
}

void skinBtn::SetFocusRectDistance(std::int16_t pixels) {
  focusRectDistance_ = pixels;
  update();
}

void skinBtn::SetFocusBorderStyle(std::int32_t value) {
  focusBorderStyle_ = std::max<std::int32_t>(value, 1);
}

void skinBtn::SetFocusBorderWidth(std::int16_t value) {
  focusBorderWidth_ = std::max<std::int16_t>(value, 1);
}

int skinBtn::Top() const {
  return ToTwips(y());
}

int skinBtn::Left() const {
  return ToTwips(x());
}

int skinBtn::Height() const {
  return ToTwips(height());
}

int skinBtn::Width() const {
  return ToTwips(width());
}

void skinBtn::SetTop(int twips) {
  move(x(), ToPixels(twips));
}

void skinBtn::SetLeft(int twips) {
  move(ToPixels(twips), y());
}

void skinBtn::SetHeight(int twips) {
  resize(width(), std::max(0, ToPixels(twips)));
  Resize();
}

void skinBtn::SetWidth(int twips) {
  resize(std::max(0, ToPixels(twips)), height());
  Resize();
}

// ------------------------------------------------------------------------------ layout and look

void skinBtn::Resize() {
  if (Width() < kSmallestSide || Height() < kSmallestSide) {
    resize(std::max(width(), ToPixels(kSmallestSide)), std::max(height(), ToPixels(kSmallestSide)));
  }
  parts_.MML = QSizeF(Width(), Height());
  const bool hasBorder = std::any_of(
      looks_.begin(), looks_.end(), [](const LookSettings& look) { return look.borderStyle != 0; });
  const int extra = hasBorder ? 0 : kTwipsPerPixel;  // a shape without border is a pixel smaller
  const int distance = ToTwips(ShadowDistance());
  const QSizeF size(Width() - distance + extra, Height() - distance + extra);
  parts_.back.Box.setSize(size);
  parts_.shadow.Box = QRectF(QPointF(distance, distance), size);
  CentreCaption();
}

void skinBtn::CentreCaption() {
  const QSize text = Fonts::CaptionSize(parts_.btn.Font, Caption());
  const QSizeF size(ToTwips(text.width()), ToTwips(text.height()));
  const QRectF& back = parts_.back.Box;
  parts_.btn.Box = QRectF(QPointF(back.left() + (back.width() - size.width()) / 2,
                                  back.top() + (back.height() - size.height()) / 2),
                          size);
  update();
}

void skinBtn::ApplyLook(Look look, bool force) {
  if (look_ == look && !force) return;
  const bool wasPressed = LookDown();
  look_ = look;
  const LookSettings& settings = looks_[look];
  for (skinBtnParts::ShapeElement* const shape : {&parts_.shadow, &parts_.back}) {
    shape->BorderWidth = settings.frameWidth;
    shape->BackStyle = settings.backStyle;
    shape->BorderStyle = settings.borderStyle;
  }
  parts_.shadow.BackColor = settings.shadowColor;
  parts_.shadow.BorderColor = settings.shadowColor;
  parts_.back.Box.moveTopLeft(look == kDown ? parts_.shadow.Box.topLeft() : QPointF());
  parts_.back.BackColor = settings.backColor;
  parts_.back.BorderColor = settings.frameColor;
  parts_.btn.ForeColor = settings.foreColor;
  parts_.btn.Font = settings.font;
  CentreCaption();
  if (wasPressed != LookDown()) Accessibility::PressedChanged(this);
}

void skinBtn::Normal(bool force) {
  ApplyLook(kNormal, force);
}

void skinBtn::MouseMove(bool force) {
  if (LookOver() && !force) return;
  ApplyLook(kOver, true);
  Watch();
}

void skinBtn::MouseDown(bool force) {
  ApplyLook(kDown, force);
}

void skinBtn::RedrawLook() {
  if (LookOver()) {
    MouseMove(true);
  } else if (look_) {
    ApplyLook(*look_, true);
  }
}

void skinBtn::BlinkButton() {
  if (blinkFrequency_ <= 0) return;
  const bool automatic = std::exchange(autoDrawButton_, false);
  MouseDown();
  repaint();
  QThread::msleep(static_cast<unsigned long>(blinkFrequency_) * 2);
  Normal();
  repaint();
  autoDrawButton_ = automatic;
  update();
}

bool skinBtn::MustDrawFocusRect() const {
  return HasFocus_ && drawFocusRect_ && autoDrawButton_ && enabled_;
}

// Inside the face and its frame: on the shadow or the frame it would be hard to see.
QRectF skinBtn::FocusBox(qreal ratio) const {
  const int distance = focusRectDistance_;
  const int width = parts_.back.BorderStyle != 0 ? parts_.back.BorderWidth : 0;
  const qreal frame = qRound(width * ratio) / ratio;  // as wide as it is painted
  return QRectF(rect()).adjusted(distance, distance, -distance, -distance) &
         QRectF(PixelBox(parts_.back.Box)).adjusted(frame, frame, -frame, -frame);
}

void skinBtn::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  Painting::Fill(painter, rect(), Colours::ToQColor(BackColor()));
  if (shadowVisible_) PaintShape(painter, parts_.shadow, shape_);
  PaintShape(painter, parts_.back, shape_);
  Painting::DrawLabel(painter, PixelBox(parts_.btn.Box), parts_.btn.Font, Caption(),
                      Colours::ToQColor(parts_.btn.ForeColor), IsUsable());
  if (MustDrawFocusRect()) {
    painter.setClipRegion(QRegion(rect()) -
                          Fonts::InkBox(PixelBox(parts_.btn.Box), parts_.btn.Font, Caption()));
    Painting::DrawFocusRect(painter, FocusBox(painter.deviceTransform().m11()));
  }
}

bool skinBtn::event(QEvent* event) {
  // Comes once, before the first showing: all properties are set by then. Those that only wait
  // for their look to come show from now on.
  if (event->type() == QEvent::Polish) {
    Resize();
    RedrawLook();
  }
  return QWidget::event(event);
}

void skinBtn::resizeEvent(QResizeEvent* /*event*/) {
  Resize();
}

void skinBtn::showEvent(QShowEvent* event) {
  // With the cursor elsewhere the first tick of the timer takes the look back. A window that comes
  // back from being minimised shows nothing anew.
  if (autoDrawButton_ && !event->spontaneous()) MouseMove();
}

// --------------------------------------------------------------------------------------- mouse

bool skinBtn::IsUnderCursor() const {
  return hWndByMouse() == this;
}

// The first tick takes a look back that only the showing has put on, before anybody sees it; from
// then on one in a frame does. A running timer keeps its pace, so that a stream of mouse moves
// doesn't hold its ticks back.
void skinBtn::Watch() {
  if (!Timer1_.isActive()) Timer1_.start(kFirstTick);
}

void skinBtn::MML_MouseDown(const MouseArguments& mouse) {
  if (KeyHeld_) return;
  if (mouse.Button == Input::kLeftButton && autoDrawButton_) MouseDown();
  emit MousDown(mouse.Button, mouse.Shift, mouse.X, mouse.Y);
}

void skinBtn::MML_MouseMove(const MouseArguments& mouse) {
  const QPointer<skinBtn> self(this);
  if (!MouseIn_) {
    MouseIn_ = true;
    emit MouseEnter();
    if (!self) return;
  }
  if (KeyHeld_) return;
  const bool isOutside =
      mouse.X < 0 || mouse.Y < 0 || mouse.X > parts_.MML.width() || mouse.Y > parts_.MML.height();
  if (autoDrawButton_) {
    switch (mouse.Button) {
      case Input::kNoButton:
        MouseMove();
        break;
      case Input::kLeftButton:
        isOutside ? Normal() : MouseDown();
        break;
      case Input::kRightButton:
      case Input::kMiddleButton:
        isOutside ? Normal() : MouseMove();
        break;
      default:
        break;
    }
  }
  Watch();
  emit MousMove(mouse.Button, mouse.Shift, mouse.X, mouse.Y);
}

void skinBtn::MML_MouseUp(const MouseArguments& mouse) {
  if (mouse.Shift == 0 && KeyHeld_) return;
  if (autoDrawButton_) IsUnderCursor() ? MouseMove() : Normal();
  LastButton_ = mouse.Button;
  update();
  if (mouse.Shift != kShiftOfSpaceKey) emit MousUp(mouse.Button, mouse.Shift, mouse.X, mouse.Y);
}

void skinBtn::MML_Click() {
  if (LastButton_ == Input::kLeftButton && !KeyHeld_) emit Click();
}

void skinBtn::Timer1_Timer() {
  if (IsUnderCursor()) {
    if (Timer1_.interval() != kFrame) Timer1_.setInterval(kFrame);
    return;
  }
  if (autoDrawButton_) Normal();
  Timer1_.stop();
  MouseIn_ = false;
  emit MouseLeave();
}

namespace {

float Twips(double pixels) {
  return static_cast<float>(pixels * kTwipsPerPixel);
}

}  // namespace

void skinBtn::mousePressEvent(QMouseEvent* event) {
  if (Input::ButtonNumber(event->button()) == Input::kNoButton) return event->ignore();
  pressedHere_ |= event->button();
  if (!enabled_) return;
  const QPointF place = event->position();
  MML_MouseDown({Input::ButtonNumber(event->button()), Input::ShiftState(event->modifiers()),
                 Twips(place.x()), Twips(place.y())});
}

void skinBtn::mouseMoveEvent(QMouseEvent* event) {
  if (!enabled_) return;
  const QPointF place = event->position();
  MML_MouseMove({Input::HeldButtons(event->buttons()), Input::ShiftState(event->modifiers()),
                 Twips(place.x()), Twips(place.y())});
}

void skinBtn::mouseReleaseEvent(QMouseEvent* event) {
  if (Input::ButtonNumber(event->button()) == Input::kNoButton) return event->ignore();
  const bool beganHere = pressedHere_.testFlag(event->button());
  pressedHere_ &= ~Qt::MouseButtons(event->button());
  if (!enabled_) return;
  const QPointF place = event->position();
  const QPointer<skinBtn> self(this);
  MML_MouseUp({Input::ButtonNumber(event->button()), Input::ShiftState(event->modifiers()),
               Twips(place.x()), Twips(place.y())});
  const bool isInside =
      self && place.x() >= 0 && place.x() < width() && place.y() >= 0 && place.y() < height();
  if (isInside && enabled_ && beganHere) MML_Click();
}

// ---------------------------------------------------------------------------- keyboard and focus

// The click of the default button that keyboard clicks go through.
void skinBtn::cmdDummy_Click() {
  if (!raiseClickByKeyEvent_) return;
  const QPointer<skinBtn> self(this);
  BlinkButton();
  emit KeyDown(kEnterKey, 0);
  if (self) emit Click();
}

// What hears of the press may move the focus or delete the control: then nothing is held.
bool skinBtn::SpaceDown() {
  const QPointer<skinBtn> self(this);
  MML_MouseDown({Input::kLeftButton, 0, 0, 0});
  if (self && HasFocus_) KeyHeld_ = true;
  return true;
}

bool skinBtn::SurfaceKeyDown(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Space:
      return SpaceDown();
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!raiseClickByKeyEvent_) return false;
      if (!key.isAutoRepeat()) emit Click();
      return true;
    case Qt::Key_Left:
    case Qt::Key_Up:
      return !raiseClickByKeyEvent_ && focusNextPrevChild(false);
    case Qt::Key_Right:
    case Qt::Key_Down:
      return !raiseClickByKeyEvent_ && focusNextPrevChild(true);
    default:
      return false;
  }
}

void skinBtn::keyPressEvent(QKeyEvent* event) {
  event->setAccepted(false);
  if (!enabled_) return;
  const QPointer<skinBtn> self(this);
  const bool isUsed = SurfaceKeyDown(*event);
  event->setAccepted(isUsed);
  if (!self || event->text().isEmpty()) return;
  emit KeyPress(static_cast<std::int16_t>(event->text().front().unicode()));
}

void skinBtn::SpaceUp() {
  const QPointer<skinBtn> self(this);
  MML_MouseUp({Input::kNoButton, kShiftOfSpaceKey, 0, 0});
  if (!raiseClickByKeyEvent_ && enabled_) emit Click();
  if (!self) return;
  KeyHeld_ = false;
  if (enabled_) cmdDummy_Click();
}

void skinBtn::keyReleaseEvent(QKeyEvent* event) {
  event->setAccepted(false);
  if (event->isAutoRepeat()) return;  // the key is still held
  const QPointer<skinBtn> self(this);
  const bool endsPress = event->key() == Qt::Key_Space && KeyHeld_;
  const int code = Input::KeyCode(*event);
  const int shift = Input::ShiftState(event->modifiers());
  event->setAccepted(endsPress);
  if (endsPress) SpaceUp();
  if (self) emit KeyUp(code, shift);
}

void skinBtn::focusInEvent(QFocusEvent* /*event*/) {
  HasFocus_ = true;
  if (enabled_) {
    RedrawLook();
  } else {
    focusNextPrevChild(true);
  }
}

void skinBtn::focusOutEvent(QFocusEvent* /*event*/) {
  HasFocus_ = false;
  // The release of the space key will go elsewhere, so its press ends here.
  if (std::exchange(KeyHeld_, false) && autoDrawButton_) Normal();
  if (enabled_) RedrawLook();
}
