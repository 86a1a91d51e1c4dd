#include "platform/window/basMinMax.h"

#include <QEvent>
#include <QObject>
#include <QSize>
#include <QWidget>

namespace {

// Watches a form's size for it. The toolkit's minimum grows a smaller window at once, so it is
// set only when the window is large enough, or changes its size anyway.
class MinTrack : public QObject {
 public:
  MinTrack(QWidget* form, const QSize& limit) : QObject(form), form_(form), limit_(limit) {
    form->installEventFilter(this);
    const QSize inner = Inner();
    const bool isLargeEnough = form->size().expandedTo(inner) == form->size();
    form->setMinimumSize(isLargeEnough ? inner : QSize(0, 0));
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != form_ || event->type() != QEvent::Resize) return false;
    const QSize changed = form_->size();
    form_->setMinimumSize(Inner());
    // A window that had to grow has had an event of its own for the size that holds.
    return form_->size() != changed;
  }

 private:
  // The limit without the frame, which may change with the window's state.
  [[nodiscard]] QSize Inner() const {
    return (limit_ - (form_->frameGeometry().size() - form_->size())).expandedTo(QSize(0, 0));
  }

  QWidget* form_;  // the parent
  QSize limit_;
};

// There are two windows at most that have a limit, so they are asked rather than kept in a list.
MinTrack* FindHook(const QWidget* form) {
  for (QObject* const child : form->children()) {
    if (auto* const hook = dynamic_cast<MinTrack*>(child)) return hook;
  }
  return nullptr;
}

}  // namespace

namespace basMinMax {

void HookMinMax(QWidget* form, std::int32_t MinWidth, std::int32_t MinHeight) {
  delete FindHook(form);
  new MinTrack(form, QSize(MinWidth, MinHeight));  // the form's, and deleted with it
}

void UnhookMinMax(QWidget* form) {
  delete FindHook(form);
  form->setMinimumSize(0, 0);
}

}  // namespace basMinMax
