#include "platform/window/WindowDrag.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>
#include <algorithm>

namespace {

constexpr int kTremor = 4;  // pixels that a click may move the mouse

}  // namespace

void WindowDrag::Start(QWidget* window, Qt::Edges edges, Qt::MouseButton button,
                       const QPointF& mouse) {
  if (QWidget* const grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
  const bool hasFixedSize = window->isMaximized() || window->isFullScreen();
  if (window->windowHandle() == nullptr || (hasFixedSize && edges != kAllEdges)) return;
  window_ = window;
  edges_ = edges;
  button_ = button;
  mouseFrom_ = mouse;
  boxFrom_ = window->geometry();
  // Window managers watch for the left button's end alone. A move they get only when the mouse has
  // moved: they take the mouse, and the second press of a double click with it. Under Wayland no
  // window can follow by itself until then.
  static const bool isWayland = QGuiApplication::platformName().startsWith("wayland");
  const bool isLeft = button == Qt::LeftButton;
  asksLater_ = isLeft && edges == kAllEdges && !isWayland;
  way_ = QPoint();
  const bool isTaken = isLeft && !asksLater_ && AskSystem(edges);
  state_ = isTaken ? State::kSystem : State::kFollows;
  QCoreApplication::instance()->installEventFilter(this);
}

bool WindowDrag::AskSystem(Qt::Edges edges) const {
  QWindow* const handle = window_->windowHandle();
  return edges == kAllEdges ? handle->startSystemMove() : handle->startSystemResize(edges);
}

QRect WindowDrag::Dragged(const QRect& start, Qt::Edges edges, const QPoint& way,
                          const QSize& minimum, const QSize& maximum) {
  if (edges == kAllEdges) return start.translated(way);
  const int across = edges.testFlag(Qt::LeftEdge)    ? -way.x()
                     : edges.testFlag(Qt::RightEdge) ? way.x()
                                                     : 0;
  const int down = edges.testFlag(Qt::TopEdge)      ? -way.y()
                   : edges.testFlag(Qt::BottomEdge) ? way.y()
                                                    : 0;
  const QSize size = (start.size() + QSize(across, down)).expandedTo(minimum).boundedTo(maximum);
  QRect box(start.topLeft(), size);
  if (edges.testFlag(Qt::LeftEdge)) box.moveRight(start.right());
  if (edges.testFlag(Qt::TopEdge)) box.moveBottom(start.bottom());
  return box;
}

// Of each event of the mouse a window of the system hears first, then the widget in it.
bool WindowDrag::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseMove:
      return MouseMoved(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
      if (static_cast<QMouseEvent*>(event)->button() == button_) End();
      break;
    case QEvent::MouseButtonPress:
      if (state_ == State::kSystem && watched->isWindowType()) End();
      break;
    default:
      break;
  }
  return false;
}

bool WindowDrag::MouseMoved(const QMouseEvent& event) {
  const bool isHeld = event.buttons().testFlag(button_);
  if (state_ == State::kSystem) {
    if (!isHeld) MakeUpRelease();
    return false;
  }
  // The button may have been let go unheard, as while a message box was in front.
  if (!isHeld || !window_) {
    End();
    return false;
  }
  const QPoint way = (event.globalPosition() - mouseFrom_).toPoint();
  if (asksLater_ && way.manhattanLength() < kTremor) return true;
  if (asksLater_ && IsTimeToAsk(way)) {
    asksLater_ = false;
    if (AskSystem(edges_)) {
      state_ = State::kSystem;
      return true;
    }
  }
  way_ = way;
  window_->setGeometry(
      Dragged(boxFrom_, edges_, way, window_->minimumSize(), window_->maximumSize()));
  return true;
}

// Whoever takes over goes on from where window and mouse are, and the mouse's last step is lost: it
// must be small, and until then the window follows by itself, unless it can't.
bool WindowDrag::IsTimeToAsk(const QPoint& way) const {
  constexpr int kSmallStep = 8;  // pixels
  return window_->isMaximized() || (way - way_).manhattanLength() < kSmallStep;
}

// Some systems keep the release of the drags that they take. The toolkit would count the button as
// held, and bring all moves of the mouse to the widget that was pressed, until the next click.
void WindowDrag::MakeUpRelease() {
  const QPointer<QWidget> window = window_;
  const Qt::MouseButton button = button_;
  End();
  if (!window || window->windowHandle() == nullptr) return;
  constexpr QPointF kNowhere(-1, -1);
  QMouseEvent release(QEvent::MouseButtonRelease, kNowhere, kNowhere, window->mapToGlobal(kNowhere),
                      button, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window->windowHandle(), &release);
}

void WindowDrag::End() {
  QCoreApplication::instance()->removeEventFilter(this);
  state_ = State::kNone;
  window_ = nullptr;
  emit Ended();
}
