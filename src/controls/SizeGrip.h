#pragma once

#include <QPointF>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QWidget>
#include <cstdint>

#include "controls/Skin.h"
#include "platform/window/WindowDrag.h"

/// A grip that keeps itself in the lower right corner of its parent and resizes it with the
/// mouse, as if the window's own corner had been taken.
///
/// It serves a parent that is a plain window. In any other parent, or in a window of several
/// documents, it stays where it is put and only tells its mouse events.
class SizeGrip : public QWidget {
  Q_OBJECT

 public:
  explicit SizeGrip(QWidget* parent = nullptr);

  /// The window that the grip serves, or null.
  [[nodiscard]] QWidget* eForm() const { return eForm_; }

  /// Whether the grip goes behind its siblings each time it places itself. True at first.
  [[nodiscard]] bool AutoZOrder() const { return autoZOrder_; }
  void SetAutoZOrder(bool autoZOrder) { autoZOrder_ = autoZOrder; }

  /// The style's extent of a scroll bar in pixels, and with it the grip's size; 0 until the grip
  /// has placed itself for the first time.
  [[nodiscard]] std::int32_t HScrollHeight() const { return hScrollHeight_; }
  [[nodiscard]] std::int32_t VScrollWidth() const { return vScrollWidth_; }

  /// Starts the system's size drag on the lower right corner of that window. Where the system
  /// refuses, the window follows the mouse from here until the button is released. Nothing happens
  /// to a window that is maximised.
  void DoSize(QWidget* AnyHwnd);

 signals:
  /// A press, only without `eForm`. Places are pixels; buttons 1 left, 2 right, 4 middle;
  /// `Shift` 1 Shift, 2 Ctrl, 4 Alt.
  void MouseDown(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void MouseMove(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void MouseUp(std::int16_t Button, std::int16_t Shift, float X, float Y);
  /// The system's scroll bars have another size than when the grip last placed itself.
  void ScrollbarSizeChanged(std::int32_t VScrollWidth, std::int32_t HScrollHeight);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  using MouseSignal = void (SizeGrip::*)(std::int16_t, std::int16_t, float, float);

  void TakeForm();
  void ShowCursor();
  void SizeFrom(QWidget* AnyHwnd, const QPointF& mouse);
  void Place();
  bool TakeMetrics();
  void Tell(MouseSignal signal, Qt::MouseButtons buttons, const QMouseEvent& event);

  QPointer<QWidget> eForm_;
  bool autoZOrder_ = true;
  std::int32_t hScrollHeight_ = 0;
  std::int32_t vScrollWidth_ = 0;
  bool placing_ = false;              // moving the grip raises its own events
  SkinPicture picture_{"size_grip"};  // 16 by 16 pixels
  WindowDrag drag_;
  bool hasTakenCorner_ = false;
};

namespace SizeGripGeometry {

/// Where a grip of this size fills the corner of the form's inner area.
QRect Corner(const QSize& form, const QSize& grip);

}  // namespace SizeGripGeometry
