#include "controls/Input.h"

#include <algorithm>
#include <array>

namespace {

struct Key {
  int key;
  int code;
};

// Letters and digits have the same numbers on both sides.
constexpr std::array<Key, 22> kKeyCodes = {{
    {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Backtab, 9},  {Qt::Key_Return, 13},
    {Qt::Key_Enter, 13},    {Qt::Key_Shift, 16},    {Qt::Key_Control, 17}, {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27},  {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},   {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},     {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},     {Qt::Key_Up, 38},       {Qt::Key_Right, 39},   {Qt::Key_Down, 40},
    {Qt::Key_Insert, 45},   {Qt::Key_Delete, 46},
}};
constexpr int kCodeOfF1 = 112;

}  // namespace

namespace Input {

int ButtonNumber(Qt::MouseButton button) {
  return HeldButtons(button);
}

int HeldButtons(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? kLeftButton : 0) +
         (buttons.testFlag(Qt::RightButton) ? kRightButton : 0) +
         (buttons.testFlag(Qt::MiddleButton) ? kMiddleButton : 0);
}

int ShiftState(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) +
         (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) +
         (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

int KeyCode(const QKeyEvent& event) {
  const int key = event.key();
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) return key;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return kCodeOfF1 + key - Qt::Key_F1;
  const auto found = std::find_if(kKeyCodes.begin(), kKeyCodes.end(),
                                  [key](const Key& row) { return row.key == key; });
  return found == kKeyCodes.end() ? 0 : found->code;
}

}  // namespace Input
