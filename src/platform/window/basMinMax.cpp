#include "platform/window/basMinMax.h"

#include <QEvent>
#include <QObject>
#include <QScreen>
#include <QSize>
#include <QWidget>

namespace {

// Watches a form's size for it. The toolkit's minimum grows a smaller window at once, so it is
// set only when the window is large enough, or changes its size anyway.
class MinTrack : public QObject {
 public:
  MinTrack(QWidget* form, const QSize& limit)
      : QObject(form), form_(form), limit_(limit), size_(form->size()) {
    form->installEventFilter(this);
    const QSize inner = Inner();
    const bool isLargeEnough = form->size().expandedTo(inner) == form->size();
    form->setMinimumSize(isLargeEnough ? inner : QSize(0, 0));
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != form_ || event->type() != QEvent::Resize) return false;
    const QSize changed = form_->size();
    // The first showing reports a size too, which is no change.
    if (changed == size_) return false;
    form_->setMinimumSize(Inner());
    size_ = form_->size();
    // A window that had to grow has had an event of its own for the size that holds.
    return form_->size() != changed;
  }

 private:
  // The limit without the frame, which may change with the window's state. A window that has to
  // be larger than its screen couldn't be reached any more.
  [[nodiscard]] QSize Inner() const {
    const QSize inner = limit_ - (form_->frameGeometry().size() - form_->size());
    return inner.boundedTo(form_->screen()->size()).expandedTo(QSize(0, 0));
  }

  QWidget* form_;  // the parent
  QSize limit_;
  QSize size_;  // as last seen
};

// A form has one at most, so its children are asked rather than a list kept.
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
