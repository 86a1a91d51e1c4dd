#include "controls/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QStringList>

namespace {

class ButtonInterface : public QAccessibleWidget {
 public:
  explicit ButtonInterface(QWidget* widget) : QAccessibleWidget(widget, QAccessible::PushButton) {}

  [[nodiscard]] QAccessible::Role role() const override {
    const AccessibleButton* const control = Control();
    return control != nullptr && control->IsTab() ? QAccessible::PageTab : QAccessible::PushButton;
  }

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const AccessibleButton* const control = Control();
    if (kind != QAccessible::Name || control == nullptr) return QAccessibleWidget::text(kind);
    // A caption that is only a sign has its words beside it.
    const QString given = widget()->accessibleName();
    return given.isEmpty() ? control->AccessibleCaption() : given;
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    const AccessibleButton* const control = Control();
    if (control == nullptr) return state;
    state.pressed = control->IsPressed() && !control->IsTab();
    state.selectable = control->IsTab();
    state.selected = control->IsPressed() && control->IsTab();
    state.checkable = control->IsToggle();
    state.checked = control->IsToggle() && control->IsOn();
    if (!control->IsUsable()) {
      state.disabled = true;
      state.focusable = false;
    }
    return state;
  }

  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    const AccessibleButton* const control = Control();
    if (control != nullptr && control->IsUsable()) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString& name) override {
    AccessibleButton* const control = Control();
    if (name != pressAction()) {
      QAccessibleWidget::doAction(name);
    } else if (control != nullptr && control->IsUsable()) {
      QMetaObject::invokeMethod(
          widget(), [button = widget()] { PressNow(button); }, Qt::QueuedConnection);
    }
  }

 private:
  static void PressNow(QWidget* button) {
    auto* const control = dynamic_cast<AccessibleButton*>(button);
    if (control != nullptr && control->IsUsable()) control->Press();
  }
  // Asked anew each time: a widget that is being destroyed is no such control any more.
  [[nodiscard]] AccessibleButton* Control() const {
    return dynamic_cast<AccessibleButton*>(object());
  }
};

QAccessibleInterface* MakeInterface(const QString& /*className*/, QObject* object) {
  auto* const widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr || dynamic_cast<AccessibleButton*>(object) == nullptr) return nullptr;
  return new ButtonInterface(widget);
}

}  // namespace

AccessibleButton::AccessibleButton() {
  [[maybe_unused]] static const bool kIsInstalled = [] {
    QAccessible::installFactory(&MakeInterface);
    return true;
  }();
}

namespace Accessibility {

void NameChanged(QWidget* button) {
  QAccessibleEvent event(button, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
}

void PressedChanged(QWidget* button) {
  const auto* const control = dynamic_cast<const AccessibleButton*>(button);
  if (control != nullptr && control->IsTab()) {
    QAccessibleEvent event(
        button, control->IsPressed() ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
    QAccessible::updateAccessibility(&event);
    return;
  }
  QAccessible::State changed;
  changed.pressed = true;
  QAccessibleStateChangeEvent event(button, changed);
  QAccessible::updateAccessibility(&event);
}

void UsableChanged(QWidget* button) {
  QAccessible::State changed;
  changed.disabled = true;
  QAccessibleStateChangeEvent event(button, changed);
  QAccessible::updateAccessibility(&event);
}

}  // namespace Accessibility
