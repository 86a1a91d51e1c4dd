#pragma once

#include <QObject>
#include <QPoint>
#include <optional>

#include "platform/window/WindowDrag.h"

class QMouseEvent;
class QWidget;

/// Lets the user move and resize a window that has no frame of the system's: from its outermost
/// pixels, and by a press that the window hands over.
class BorderlessFrame : public QObject {
  Q_OBJECT

 public:
  explicit BorderlessFrame(QWidget* form);
  ~BorderlessFrame() override;
  BorderlessFrame(const BorderlessFrame&) = delete;
  BorderlessFrame& operator=(const BorderlessFrame&) = delete;
  BorderlessFrame(BorderlessFrame&&) = delete;
  BorderlessFrame& operator=(BorderlessFrame&&) = delete;

  /// Watches the form's present window of the system; to be called when it is shown.
  void Attach();
  /// A press of that button on the form, at that place of the screen, moves it until the button
  /// is let go.
  void StartMove(Qt::MouseButton button, const QPoint& mouse);

  /// The edges that a press at `mouse` takes hold of in a window of that size.
  static Qt::Edges EdgesAt(const QPoint& mouse, const QSize& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool MousePressed(const QMouseEvent& event);
  void MouseMoved(const QMouseEvent& event);
  void ShowCursor(std::optional<Qt::CursorShape> cursor);

  QWidget* form_;
  std::optional<Qt::CursorShape> cursor_;  // shown instead of the controls' own
  WindowDrag drag_;
};
