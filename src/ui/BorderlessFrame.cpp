#include "ui/BorderlessFrame.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace {

constexpr int kBorder = 4;   // pixels that take hold of an edge
constexpr int kCorner = 14;  // pixels along an edge that take hold of the corner

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

BorderlessFrame::BorderlessFrame(QWidget* form) : QObject(form), form_(form) {
  connect(&drag_, &WindowDrag::Ended, this, [this] { ShowCursor(std::nullopt); });
}

BorderlessFrame::~BorderlessFrame() {
  ShowCursor(std::nullopt);
}

void BorderlessFrame::Attach() {
  form_->windowHandle()->installEventFilter(this);
}

void BorderlessFrame::StartMove(Qt::MouseButton button, const QPoint& mouse) {
  ShowCursor(Qt::SizeAllCursor);
  drag_.Start(form_, WindowDrag::kAllEdges, button, mouse);
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

bool BorderlessFrame::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      if (MousePressed(*static_cast<QMouseEvent*>(event))) return true;
      break;
    case QEvent::MouseMove:
      MouseMoved(*static_cast<QMouseEvent*>(event));
      break;
    case QEvent::Leave:
      if (!drag_.Follows()) ShowCursor(std::nullopt);
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
  drag_.Start(form_, edges, event.button(), event.globalPosition());
  return true;
}

void BorderlessFrame::MouseMoved(const QMouseEvent& event) {
  if (event.buttons() != Qt::NoButton) return;
  ShowCursor(form_->isMaximized() ? std::nullopt
                                  : CursorFor(EdgesAt(event.position().toPoint(), form_->size())));
}

void BorderlessFrame::ShowCursor(std::optional<Qt::CursorShape> cursor) {
  if (cursor == cursor_) return;
  if (cursor_) QGuiApplication::restoreOverrideCursor();
  if (cursor) QGuiApplication::setOverrideCursor(*cursor);
  cursor_ = cursor;
}
