#pragma once

#include <cstdint>

class QWidget;

/// A lower limit on the size of a window.
namespace basMinMax {

/// The window can't be made smaller than this, frame included, in pixels, from its next change
/// of size on: a window that is smaller stays so until then. Another limit on the same window
/// takes the place of the first.
void HookMinMax(QWidget* form, std::int32_t MinWidth, std::int32_t MinHeight);
/// Takes the limit off.
void UnhookMinMax(QWidget* form);

}  // namespace basMinMax
