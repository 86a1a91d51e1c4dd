#pragma once

/// What screen readers learn of `tc_PBar` and `CtrlScroller`: their role, range and value. The
/// value of a `CtrlScroller` can be set from there, as if the mouse had moved the handle.
namespace BarAccessibility {

/// Makes the toolkit ask here for the two controls. They call it themselves.
void Install();

}  // namespace BarAccessibility
