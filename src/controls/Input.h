#pragma once

#include <QKeyEvent>
#include <QMouseEvent>

/// What the events of the controls pass on of mouse and keyboard, in the numbers of Windows.
namespace Input {

enum Button : int { kNoButton = 0, kLeftButton = 1, kRightButton = 2, kMiddleButton = 4 };

/// A button's number; 0 for one that isn't left, right or middle.
int ButtonNumber(Qt::MouseButton button);
/// The numbers of all held buttons, added.
int HeldButtons(Qt::MouseButtons buttons);
/// Shift 1, Control 2 and Alt 4, added.
int ShiftState(Qt::KeyboardModifiers modifiers);
/// The virtual key code of a key, such as 13 for Enter and 65 for the letter A; 0 for a key that
/// has none here.
int KeyCode(const QKeyEvent& event);

}  // namespace Input
