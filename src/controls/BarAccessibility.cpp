#include "controls/BarAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "controls/CtrlScroller.h"
#include "controls/tc_PBar.h"

namespace {

// The part that both bars share: a widget that has a value.
class AccessibleBar : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
};

class AccessiblePBar : public AccessibleBar {
 public:
  explicit AccessiblePBar(tc_PBar* bar) : AccessibleBar(bar, QAccessible::ProgressBar), bar_(bar) {}

  [[nodiscard]] QString text(QAccessible::Text what) const override {
    if (what == QAccessible::Value) return QString::number(bar_->WholePercent()) + '%';
    return AccessibleBar::text(what);
  }
  [[nodiscard]] QVariant currentValue() const override { return int{bar_->Value()}; }
  void setCurrentValue(const QVariant& /*value*/) override {}  // it shows, and takes no input
  [[nodiscard]] QVariant minimumValue() const override { return int{bar_->Min()}; }
  [[nodiscard]] QVariant maximumValue() const override { return int{bar_->Max()}; }

 private:
  tc_PBar* bar_;  // outlives this
};

class AccessibleScroller : public AccessibleBar {
 public:
  explicit AccessibleScroller(CtrlScroller* scroller)
      : AccessibleBar(scroller, QAccessible::Slider), scroller_(scroller) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = AccessibleBar::state();
    if (!scroller_->Enabled()) state.disabled = 1;
    return state;
  }
  [[nodiscard]] QString text(QAccessible::Text what) const override {
    if (what == QAccessible::Value) return QString::number(scroller_->Value());
    return AccessibleBar::text(what);
  }
  [[nodiscard]] QVariant currentValue() const override { return scroller_->Value(); }
  void setCurrentValue(const QVariant& value) override { scroller_->MoveTo(value.toInt()); }
  [[nodiscard]] QVariant minimumValue() const override { return scroller_->Min(); }
  [[nodiscard]] QVariant maximumValue() const override { return scroller_->Max(); }

 private:
  CtrlScroller* scroller_;  // outlives this
};

QAccessibleInterface* Make(const QString& /*className*/, QObject* object) {
  if (auto* const bar = qobject_cast<tc_PBar*>(object)) return new AccessiblePBar(bar);
  if (auto* const scroller = qobject_cast<CtrlScroller*>(object)) {
    return new AccessibleScroller(scroller);
  }
  return nullptr;
}

}  // namespace

namespace BarAccessibility {

void Install() {
  QAccessible::installFactory(Make);
}

}  // namespace BarAccessibility
