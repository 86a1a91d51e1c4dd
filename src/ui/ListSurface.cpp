#include "ui/ListSurface.h"

#include <QCursor>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "controls/Fonts.h"
#include "controls/Input.h"
#include "controls/Painting.h"
#include "platform/window/hWndByMouse.h"
#include "ui/ListAccessibility.h"
#include "ui/ListScrollBar.h"
#include "ui/PlainToolTip.h"

namespace {

/// More letters than go on a line of the widest screen. The rest would cost time, unseen.
constexpr qsizetype kMostLetters = 4000;

// Lines mostly come in runs of one font, and asking for its data costs more than drawing.
class LinePrinter {
 public:
  explicit LinePrinter(QPainter& painter) : painter_(painter) {}

  /// A text wider than `room` pixels loses its end.
  void Print(const QPoint& place, const QString& text, int room, const QFont& font,
             const QColor& colour) {
    if (!isReady_ || font != font_) Take(font);
    painter_.setPen(colour);
    if (needsDrawnGlyphs_) {
      Fonts::DrawCaption(painter_, {place, Fonts::CaptionSize(font, text)}, font, text);
      return;
    }
    const bool fits = metrics_.horizontalAdvance(text) <= room;
    const QString shown = fits ? text : metrics_.elidedText(text, Qt::ElideRight, room);
    Fonts::PrintInWeight(
        painter_, [&] { painter_.drawText(place.x(), place.y() + metrics_.ascent(), shown); });
  }

 private:
  void Take(const QFont& font) {
    isReady_ = true;
    font_ = font;
    metrics_ = QFontMetrics(font);
    needsDrawnGlyphs_ = Fonts::NeedsDrawnGlyphs(font);
    painter_.setFont(font);
  }

  QPainter& painter_;
  QFont font_;
  QFontMetrics metrics_{font_};
  bool isReady_ = false;
  bool needsDrawnGlyphs_ = false;
};

}  // namespace

ListSurface::ListSurface(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  ListAccessibility::Install();
}

// ------------------------------------------------------------------------------------ painting

void ListSurface::SetBackColor(ColourNumber colour) {
  backColor_ = colour;
  update();
}

void ListSurface::Clear() {
  painted_.clear();
  update();
}

void ListSurface::FillBox(const QRect& box, ColourNumber colour) {
  painted_.emplace_back(Box{box, colour});
}

void ListSurface::Print(const QPoint& place, const QString& text, const QFont& font,
                        ColourNumber colour) {
  painted_.emplace_back(Line{place, text.left(kMostLetters), font, colour});
}

void ListSurface::KeepAsBackground() {
  background_.insert(background_.end(), painted_.begin(), painted_.end());
  painted_.clear();
}

void ListSurface::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  Painting::Fill(painter, rect(), Colours::ToQColor(backColor_));
  Draw(painter, background_);
  Draw(painter, painted_);
}

/// Up to the scroll bar while there is one.
int ListSurface::RoomFrom(int x) const {
  constexpr int kBesideText = 4;
  const auto* const bar = findChild<ListScrollBar*>(QString(), Qt::FindDirectChildrenOnly);
  const bool hasBar = bar != nullptr && !bar->isHidden();
  return std::max(0, (hasBar ? bar->x() : width()) - x - kBesideText);
}

void ListSurface::Draw(QPainter& painter, const std::vector<Drawing>& drawings) const {
  LinePrinter printer(painter);
  for (const Drawing& drawing : drawings) {
    if (const auto* const box = std::get_if<Box>(&drawing)) {
      Painting::Fill(painter, box->area, Colours::ToQColor(box->colour));
    } else if (const auto* const line = std::get_if<Line>(&drawing)) {
      printer.Print(line->place, line->text, RoomFrom(line->place.x()), line->font,
                    Colours::ToQColor(line->colour));
    }
  }
}

bool ListSurface::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  const Line* const line = ShortenedAt(help.pos());
  if (line != nullptr) {
    const QRect lines(0, line->place.y(), width(), QFontMetrics(line->font).height());
    QToolTip::showText(help.globalPos(), PlainToolTip(line->text), this, lines);
  } else {
    QToolTip::hideText();
  }
  return true;
}

/// The line at a place that has lost its end, null if there is none.
const ListSurface::Line* ListSurface::ShortenedAt(const QPoint& place) const {
  const auto found = std::find_if(painted_.rbegin(), painted_.rend(), [&](const Drawing& drawing) {
    const auto* const line = std::get_if<Line>(&drawing);
    if (line == nullptr || place.x() < line->place.x()) return false;
    const QFontMetrics metrics(line->font);
    const int below = place.y() - line->place.y();
    return below >= 0 && below < metrics.height() &&
           metrics.horizontalAdvance(line->text) > RoomFrom(line->place.x());
  });
  return found == painted_.rend() ? nullptr : &std::get<Line>(*found);
}

// ------------------------------------------------------------------------------ mouse and keys

void ListSurface::mousePressEvent(QMouseEvent* event) {
  const int button = Input::ButtonNumber(event->button());
  if (button == Input::kNoButton) return;
  pressed_ = button;
  // In a window that isn't active the toolkit tells of the focus only later.
  if (!hasFocus()) {
    setFocus(Qt::MouseFocusReason);
    emit GotFocus();
  }
  emit MouseDown(button, Input::ShiftState(event->modifiers()),
                 static_cast<float>(event->position().x()),
                 static_cast<float>(event->position().y()));
}

void ListSurface::mouseMoveEvent(QMouseEvent* event) {
  emit MouseMove(Input::HeldButtons(event->buttons()), Input::ShiftState(event->modifiers()),
                 static_cast<float>(event->position().x()),
                 static_cast<float>(event->position().y()));
}

void ListSurface::mouseReleaseEvent(QMouseEvent* event) {
  const int button = Input::ButtonNumber(event->button());
  if (button == Input::kNoButton || std::exchange(pressed_, 0) != button) return;
  if (rect().contains(event->position().toPoint())) emit Click();
}

void ListSurface::wheelEvent(QWheelEvent* event) {
  event->accept();  // whoever hooks the wheel has had it by now
}

// The form hears of every key as well.
void ListSurface::keyPressEvent(QKeyEvent* event) {
  emit KeyDown(Input::KeyCode(*event), Input::ShiftState(event->modifiers()));
  event->ignore();
}

// A `FocusFrame` shows the focus, so unlike the toolkit's own handlers these repaint nothing.
void ListSurface::focusInEvent(QFocusEvent* /*event*/) {
  if (pressed_ == 0) emit GotFocus();  // that of a press came before the press
}

void ListSurface::focusOutEvent(QFocusEvent* /*event*/) {}

void ListSurface::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  TellWhereMouseIs();
}

void ListSurface::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  TellWhereMouseIs();
}

void ListSurface::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::EnabledChange) return;
  pressed_ = 0;
  // The mouse may have left in the meantime, unnoticed.
  if (isEnabled() && hWndByMouse() != this) TellWhereMouseIs();
}

void ListSurface::TellWhereMouseIs() {
  if (!isEnabled()) return;
  const QPointF place = mapFromGlobal(QPointF(QCursor::pos()));
  emit MouseMove(Input::HeldButtons(QGuiApplication::mouseButtons()),
                 Input::ShiftState(QGuiApplication::keyboardModifiers()),
                 static_cast<float>(place.x()), static_cast<float>(place.y()));
}
