#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>
#include <optional>

class QMouseEvent;
class QWidget;

/// Lets the user move and resize a window that has no frame of the system's: from its outermost
/// pixels, and by a press that the window hands over. The system runs the move or resize; where
/// it doesn't, the window follows the mouse.
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
  /// The box of a window whose edges have been dragged that far, no smaller than `minimum`.
  static QRect Dragged(const QRect& start, Qt::Edges edges, const QPoint& way,
                       const QSize& minimum);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool MousePressed(const QMouseEvent& event);
  bool MouseMoved(const QMouseEvent& event);
  void ShowCursor(std::optional<Qt::CursorShape> cursor);

  QWidget* form_;
  std::optional<Qt::CursorShape> cursor_;  // shown instead of the controls' own
  // While the window follows the mouse: from where, and which edges; all four mean a move.
  bool follows_ = false;
  Qt::Edges edges_;
  QPoint mouseFrom_;
  QRect boxFrom_;
};
