#include "platform/window/clsSubClass.h"

#include <QWheelEvent>
#include <cstdlib>

namespace {

constexpr int kWholeStep = 120;  // eighths of a degree

}  // namespace

clsSubClass::clsSubClass(QObject* parent) : QObject(parent) {}

clsSubClass::~clsSubClass() {
  StopSubClass();
}

bool clsSubClass::StartSubclass(QWidget* widget) {
  if (window_ || widget == nullptr) return false;
  if (turnedOver_ != widget) turned_ = 0;
  turnedOver_ = widget;
  window_ = widget;
  window_->installEventFilter(this);
  return true;
}

bool clsSubClass::StopSubClass() {
  if (window_) window_->removeEventFilter(this);
  window_ = nullptr;
  return true;
}

// The handler may do as it likes: re-aim the hook, delete the widget or the hook itself.
bool clsSubClass::eventFilter(QObject* watched, QEvent* event) {
  if (watched != window_ || event->type() != QEvent::Wheel) return false;
  const int delta = static_cast<QWheelEvent*>(event)->angleDelta().y();
  if (delta == 0) return false;                   // sideways, or the fingers' touching down
  if ((delta < 0) != (turned_ < 0)) turned_ = 0;  // a turn back doesn't pay off the way forth
  turned_ += delta;

  if (std::abs(turned_) < kWholeStep) return false;

  // One message is one event, however far the wheel was turned.
  const QPointer<QWidget> window(window_);
  const int step = turned_ < 0 ? -kWholeStep : kWholeStep;
  turned_ %= kWholeStep;
  bool cancel = false;
  emit MessageCatched(window, step, cancel);
  return cancel || !window;
}
