#pragma once

#include <QString>
#include <QWidget>

/// What a button control tells assistive technology. A widget that derives from it stands in the
/// accessibility tree as a push button of that name, which can be pressed.
class AccessibleButton {
 public:
  AccessibleButton();
  virtual ~AccessibleButton() = default;
  AccessibleButton(const AccessibleButton&) = delete;
  AccessibleButton& operator=(const AccessibleButton&) = delete;
  AccessibleButton(AccessibleButton&&) = delete;
  AccessibleButton& operator=(AccessibleButton&&) = delete;

  [[nodiscard]] virtual QString AccessibleCaption() const = 0;
  [[nodiscard]] virtual bool IsPressed() const = 0;
  [[nodiscard]] virtual bool IsUsable() const = 0;
  /// A button that stays on when it is clicked, and whether it is on.
  [[nodiscard]] virtual bool IsToggle() const { return false; }
  [[nodiscard]] virtual bool IsOn() const { return false; }
  /// The press of a screen reader: a click without mouse and keys.
  virtual void Press() = 0;
};

namespace Accessibility {

/// Tells listeners that the caption of a button has changed.
void NameChanged(QWidget* button);
/// Tells listeners that a button has been pressed or let go.
void PressedChanged(QWidget* button);

}  // namespace Accessibility
