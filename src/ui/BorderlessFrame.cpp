#include "ui/BorderlessFrame.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace {

constexpr int kBorder = 4;   // pixels that take hold of an edge
constexpr int kCorner = 14;  // pixels along an edge that take hold of the corner
constexpr Qt::Edges kAllEdges = Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge;

std::optional<Qt::CursorShape> CursorFor(Qt::Edges edges) {
  if (edges == Qt::Edges()) return std::nullopt;
  if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
    return Qt::SizeFDiagCursor;
  }
  if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
    return Qt::SizeBDiagCursor;
  }
  return (edges & (Qt::LeftEdge | Qt::RightEdge)) != 0 ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

}  // namespace

BorderlessFrame::BorderlessFrame(QWidget* form) : QObject(form), form_(form) {}

BorderlessFrame::~BorderlessFrame() {
  ShowCursor(std::nullopt);
}

void BorderlessFrame::Attach() {
  form_->windowHandle()->installEventFilter(this);
}

void BorderlessFrame::StartMove(Qt::MouseButton button, const QPoint& mouse) {
  ShowCursor(Qt::SizeAllCursor);
  // Window managers watch for the left button's end alone.
  if (button == Qt::LeftButton && form_->windowHandle()->startSystemMove()) return;
  follows_ = true;
  edges_ = kAllEdges;
  mouseFrom_ = mouse;
  boxFrom_ = form_->geometry();
}

Qt::Edges BorderlessFrame::EdgesAt(const QPoint& mouse, const QSize& window) {
  if (!QRect(QPoint(), window).contains(mouse)) return {};
  const bool onBorder =
      !QRect(QPoint(), window).adjusted(kBorder, kBorder, -kBorder, -kBorder).contains(mouse);
  if (!onBorder) return {};
  Qt::Edges edges;
  if (mouse.x() < kCorner) edges |= Qt::LeftEdge;
  if (mouse.x() >= window.width() - kCorner) edges |= Qt::RightEdge;
  if (mouse.y() < kCorner) edges |= Qt::TopEdge;
  if (mouse.y() >= window.height() - kCorner) edges |= Qt::BottomEdge;
  return edges;
}

QRect BorderlessFrame::Dragged(const QRect& start, Qt::Edges edges, const QPoint& way,
                               const QSize& minimum) {
  if (edges == kAllEdges) return start.translated(way);
  QRect box = start;
  if (edges.testFlag(Qt::LeftEdge)) {
    box.setLeft(std::min(start.left() + way.x(), start.right() + 1 - minimum.width()));
  }
  if (edges.testFlag(Qt::RightEdge)) {
    box.setRight(std::max(start.right() + way.x(), start.left() - 1 + minimum.width()));
  }
  if (edges.testFlag(Qt::TopEdge)) {
    box.setTop(std::min(start.top() + way.y(), start.bottom() + 1 - minimum.height()));
  }
  if (edges.testFlag(Qt::BottomEdge)) {
    box.setBottom(std::max(start.bottom() + way.y(), start.top() - 1 + minimum.height()));
  }
  return box;
}

bool BorderlessFrame::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      if (MousePressed(*static_cast<QMouseEvent*>(event))) return true;
      break;
    case QEvent::MouseMove:
      if (MouseMoved(*static_cast<QMouseEvent*>(event))) return true;
      break;
    case QEvent::MouseButtonRelease:
      follows_ = false;
      ShowCursor(std::nullopt);
      break;
    case QEvent::Leave:
      if (!follows_) ShowCursor(std::nullopt);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

bool BorderlessFrame::MousePressed(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton || form_->isMaximized()) return false;
  const Qt::Edges edges = EdgesAt(event.position().toPoint(), form_->size());
  if (edges == Qt::Edges()) return false;
  if (!form_->windowHandle()->startSystemResize(edges)) {
    follows_ = true;
    edges_ = edges;
    mouseFrom_ = event.globalPosition().toPoint();
    boxFrom_ = form_->geometry();
  }
  return true;
}

bool BorderlessFrame::MouseMoved(const QMouseEvent& event) {
  // The button may have been let go unheard, as while a message box was in front.
  if (event.buttons() == Qt::NoButton) follows_ = false;
  if (follows_) {
    const QPoint way = event.globalPosition().toPoint() - mouseFrom_;
    form_->setGeometry(Dragged(boxFrom_, edges_, way, form_->minimumSize()));
    return true;
  }
  if (event.buttons() == Qt::NoButton) {
    ShowCursor(form_->isMaximized()
                   ? std::nullopt
                   : CursorFor(EdgesAt(event.position().toPoint(), form_->size())));
  }
  return false;
}

void BorderlessFrame::ShowCursor(std::optional<Qt::CursorShape> cursor) {
  if (cursor == cursor_) return;
  if (cursor_) QGuiApplication::restoreOverrideCursor();
  if (cursor) QGuiApplication::setOverrideCursor(*cursor);
  cursor_ = cursor;
}
