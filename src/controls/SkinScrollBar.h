#pragma once

class QScrollBar;

/// The look of the skin's scroll bars: flat, in the colours of its buttons, 17 pixels wide.
namespace SkinScrollBar {

inline constexpr int kWidth = 17;

/// Gives a scroll bar the look, wherever it stands.
void Apply(QScrollBar& bar);

}  // namespace SkinScrollBar
