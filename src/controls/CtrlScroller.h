#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>
#include <cstdint>

class QMimeData;
class QPointF;

/// The scroller's arithmetic. Lengths are pixels along the track; all rounding is to the nearest
/// whole number, halves to the even one.
namespace ScrollerGeometry {

struct Track {
  int Length = 0;
  int Handle = 0;  // the handle's length
};

/// What the scale runs over, and the part of it that the mouse can reach.
struct Scale {
  std::int32_t Min = 0;
  std::int32_t Max = 100;
  std::int32_t RMin = 0;
  std::int32_t RMax = 100;
};

/// Where the mouse takes the handle.
struct Reached {
  std::int32_t Value;
  bool Limited;  // by RMin or RMax
};

/// Start of the handle when its middle follows the mouse, kept on the track.
int HandleFromMouse(const Track& track, double mouse);
/// The value that a handle starting at `handle` shows. Where the scale or the handle's way has
/// no length, that is `Min`, within what the mouse can reach.
Reached ValueFromHandle(const Track& track, const Scale& scale, int handle);
/// Start of the handle that shows `value`; 0 on a scale without length.
int HandleFromValue(const Track& track, const Scale& scale, std::int32_t value);

}  // namespace ScrollerGeometry

/// A scroll bar or slider drawn wholly from four pictures. Its size is that of `ScrollBefore`,
/// whatever it is given; until there is one, the size is the user's.
///
/// Lengths are the toolkit's pixels; a picture of a higher device pixel ratio keeps its detail.
/// In the handle's pictures the colour RGB 255, 0, 255 is transparent.
class CtrlScroller : public QWidget {
  Q_OBJECT

 public:
  explicit CtrlScroller(QWidget* parent = nullptr);

  // Kept for the control's user; the control doesn't read them.
  QString Code;
  QString ProcedureClick;
  QString ProcedureMouseMove;
  QString ProcedureMouseDown;
  QString ProcedureMouseUp;
  QString Action;

  [[nodiscard]] std::int32_t Value() const { return value_; }
  /// Moves the handle to a value, limited to `Min`..`Max`. Raises nothing.
  void SetValue(std::int32_t value);
  [[nodiscard]] std::int32_t Max() const { return scale_.Max; }
  /// Sets the end of the scale and `RMax`. A value above it goes down to it, while the handle
  /// stays where it is.
  void SetMax(std::int32_t max);
  [[nodiscard]] std::int32_t Min() const { return scale_.Min; }
  /// Sets the start of the scale and `RMin`, to no more than the value.
  void SetMin(std::int32_t min);
  [[nodiscard]] std::int32_t RMax() const { return scale_.RMax; }
  void SetRMax(std::int32_t max) { scale_.RMax = max; }
  [[nodiscard]] std::int32_t RMin() const { return scale_.RMin; }
  void SetRMin(std::int32_t min) { scale_.RMin = min; }

  /// The handle at rest, the handle while pressed, the track on the low and on the high side of
  /// the handle. The two of the track are expected to be equally large.
  [[nodiscard]] QPixmap Bar() const { return bar_; }
  void SetBar(const QPixmap& picture);
  [[nodiscard]] QPixmap BarOver() const { return barOver_; }
  void SetBarOver(const QPixmap& picture);
  [[nodiscard]] QPixmap ScrollBefore() const { return picScrBefore_; }
  void SetScrollBefore(const QPixmap& picture);
  [[nodiscard]] QPixmap ScrollAfter() const { return picScrAfter_; }
  void SetScrollAfter(const QPixmap& picture);

  // These three take effect with the next thing that happens.
  [[nodiscard]] bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled) { enabled_ = enabled; }
  [[nodiscard]] bool Vertical() const { return vertical_; }
  void SetVertical(bool vertical) { vertical_ = vertical; }
  [[nodiscard]] bool Snap() const { return snap_; }
  void SetSnap(bool snap) { snap_ = snap; }

  /// The control as a window.
  [[nodiscard]] QWidget* hWnd() { return this; }
  /// The handle's place.
  [[nodiscard]] int BarLeft() const { return barLeft_; }
  [[nodiscard]] int BarTop() const { return barTop_; }

  /// What a user does who has no mouse: moves to a value within `RMin`..`RMax` and raises
  /// `Change`. Nothing while `Enabled` is false.
  void MoveTo(std::int32_t value);

 signals:
  /// The mouse moves the handle. On a horizontal control whose value isn't stopped by `RMin` or
  /// `RMax` it comes twice a move: before and after the handle snaps.
  void Change();
  /// The left button was released.
  void Click();
  /// Windows' virtual key code; 1 Shift, 2 Ctrl, 4 Alt.
  void KeyDown(std::int16_t KeyCode, std::int16_t Shift);
  /// Something was dropped on the control. `Effect` is 0 nothing, 1 copy, 2 move, 4 link, and
  /// the handler's answer. Nothing can be dropped while nobody listens.
  void OLEDragDrop(const QMimeData* Data, std::int32_t& Effect, std::int16_t Button,
                   std::int16_t Shift, float X, float Y);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void Redraw();
  void PlaceHandle();
  void FollowMouse(const QPointF& mouse);
  void TellValue();
  [[nodiscard]] ScrollerGeometry::Track Track() const;
  [[nodiscard]] int& Handle() { return vertical_ ? barTop_ : barLeft_; }

  ScrollerGeometry::Scale scale_;
  std::int32_t value_ = 0;
  bool enabled_ = true;
  bool vertical_ = false;
  bool snap_ = false;

  int barLeft_ = 0;
  int barTop_ = 0;
  bool pressed_ = false;

  QPixmap bar_;  // as they were given
  QPixmap barOver_;
  QPixmap picBar_;  // the transparent colour taken out
  QPixmap picBarOver_;
  QPixmap picScrBefore_;
  QPixmap picScrAfter_;
};
