#pragma once

#include <QString>
#include <QWidget>

/// What a button control tells assistive technology. A widget that derives from it stands in the
/// accessibility tree as a push button of that name, which can be pressed, or as a page tab.
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
  /// One of several pages' tabs: it is pressed while its page shows.
  [[nodiscard]] virtual bool IsTab() const { return false; }
  /// The press of a screen reader: a click without mouse and keys. It comes out of the event loop,
  /// never out of the reader's call, whose answer mustn't wait for what a click sets off.
  virtual void Press() = 0;
};

namespace Accessibility {

/// Tells listeners that the caption of a button has changed.
void NameChanged(QWidget* button);
/// Tells listeners that a button has been pressed or let go, or a tab selected or left.
void PressedChanged(QWidget* button);
/// Tells listeners that a button can be used now, or no more.
void UsableChanged(QWidget* button);

}  // namespace Accessibility
