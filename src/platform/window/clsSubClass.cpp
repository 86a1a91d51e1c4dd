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
  window_ = widget;
  turned_ = 0;
  window_->installEventFilter(this);
  return true;
}

bool clsSubClass::StopSubClass() {
  if (window_) window_->removeEventFilter(this);
  window_ = nullptr;
  return true;
}

bool clsSubClass::eventFilter(QObject* watched, QEvent* event) {
  if (watched != window_ || event->type() != QEvent::Wheel) return false;
  const int delta = static_cast<QWheelEvent*>(event)->angleDelta().y();
  if ((delta < 0) != (turned_ < 0)) turned_ = 0;  // a turn back doesn't pay off the way forth
  turned_ += delta;
  bool cancel = false;
  while (std::abs(turned_) >= kWholeStep && window_) {
    const int step = turned_ < 0 ? -kWholeStep : kWholeStep;
    turned_ -= step;
    emit MessageCatched(window_, step, cancel);
  }
  return cancel;
}
