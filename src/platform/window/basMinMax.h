#pragma once

class QWidget;

/// A lower limit on the size of a window.
namespace basMinMax {

/// The window can't be made smaller than this, frame included, in pixels, from its next change
/// of size on.
void HookMinMax(QWidget* form, int minWidth, int minHeight);
/// Takes the limit off.
void UnhookMinMax(QWidget* form);

}  // namespace basMinMax
