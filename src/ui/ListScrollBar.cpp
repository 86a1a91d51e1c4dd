#include "ui/ListScrollBar.h"

#include <QEnterEvent>
#include <QResizeEvent>
#include <QWheelEvent>

#include "controls/SkinScrollBar.h"
#include "platform/Failure.h"

ListScrollBar::ListScrollBar(QWidget* list) : QScrollBar(Qt::Vertical, list) {
  SkinScrollBar::Apply(*this);
  // Not by Tab: it would give the focus back to its list at once, and Tab would stay there.
  setFocusPolicy(Qt::ClickFocus);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setTracking(false);
  setSingleStep(kSmallChange);
  setRange(0, 0);
  connect(this, &QScrollBar::valueChanged, this, &ListScrollBar::Change);
  connect(this, &QScrollBar::sliderMoved, this, &ListScrollBar::Scroll);
  connect(this, &QScrollBar::actionTriggered, this, &ListScrollBar::PageBy);
  hide();
}

void ListScrollBar::SetMax(std::int32_t max) {
  if (max > Min()) Fail("scroll bar: the maximum ", max, " is above the minimum ", Min());
  setMaximum(-max);
}

bool ListScrollBar::TrySetValue(std::int32_t value) {
  if (value > Min() || value < Max()) return false;
  setValue(-value);
  return true;
}

void ListScrollBar::SetValue(std::int32_t value) {
  if (!TrySetValue(value)) {
    Fail("scroll bar: the value ", value, " isn't within ", Max(), " to ", Min());
  }
}

// The toolkit's page makes the handle as long as the share of the list that is seen.
void ListScrollBar::resizeEvent(QResizeEvent* event) {
  QScrollBar::resizeEvent(event);
  setPageStep(event->size().height());
}

void ListScrollBar::PageBy(int action) {
  if (action == SliderPageStepAdd) setSliderPosition(value() + kLargeChange);
  if (action == SliderPageStepSub) setSliderPosition(value() - kLargeChange);
}

void ListScrollBar::enterEvent(QEnterEvent* event) {
  QScrollBar::enterEvent(event);
  emit MouseOver();
}

void ListScrollBar::focusInEvent(QFocusEvent* event) {
  QScrollBar::focusInEvent(event);
  emit GotFocus();
}

// The wheel is the list's.
void ListScrollBar::wheelEvent(QWheelEvent* event) {
  event->ignore();
}
