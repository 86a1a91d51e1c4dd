#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QWidget>

class QMouseEvent;

/// Moves or resizes windows with the mouse, from a press to its release. The system is asked to do
/// it; where it refuses, the window follows the mouse, whose moves go nowhere else meanwhile.
class WindowDrag : public QObject {
  Q_OBJECT

 public:
  /// What a move drags: the whole box.
  static constexpr Qt::Edges kAllEdges =
      Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge;

  using QObject::QObject;

  /// A press of that button, at that place of the screen, drags these edges of a window on screen.
  /// Nothing happens to the size of one that is maximised.
  void Start(QWidget* window, Qt::Edges edges, Qt::MouseButton button, const QPointF& mouse);
  /// Whether the window follows the mouse. A drag of the system's doesn't count.
  [[nodiscard]] bool Follows() const { return state_ == State::kFollows; }

  /// The box of a window whose edges have been dragged that far, within its limits.
  static QRect Dragged(const QRect& start, Qt::Edges edges, const QPoint& way, const QSize& minimum,
                       const QSize& maximum);

 signals:
  /// The button has been let go, or the mouse is back from the system's drag.
  void Ended();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class State { kNone, kFollows, kSystem };

  [[nodiscard]] bool AskSystem(Qt::Edges edges) const;
  [[nodiscard]] bool IsTimeToAsk(const QPoint& way) const;
  bool MouseMoved(const QMouseEvent& event);
  void MakeUpRelease();
  void End();

  State state_ = State::kNone;
  QPointer<QWidget> window_;
  bool asksLater_ = false;  // the system is asked when the mouse moves
  QPoint way_;              // of the mouse, as far as the window has followed
  Qt::Edges edges_;
  Qt::MouseButton button_ = Qt::NoButton;
  // Where both were at the start.
  QPointF mouseFrom_;
  QRect boxFrom_;
};
