#pragma once

#include <QColor>
#include <QPalette>
#include <cstdint>

/// A colour as Windows numbers it: 0x00BBGGRR. A negative number means the system colour whose
/// index is in its lower 31 bits, such as 0x8000000F for the face of buttons.
using ColourNumber = std::int32_t;

namespace Colours {

/// Indices of the system colours that the program uses.
enum System : int {
  kHighlight = 13,
  kHighlightText = 14,
  kButtonFace = 15,
  kButtonShadow = 16,
  kGrayText = 17,
  kButtonHighlight = 20,
};

/// The colour number of a system colour: the role of `palette` that fits it. 0 for an index
/// that Windows doesn't know.
ColourNumber GetSysColor(int index, const QPalette& palette = QPalette());

/// A colour number, system colours included, for painting.
QColor ToQColor(ColourNumber colour, const QPalette& palette = QPalette());
ColourNumber FromQColor(const QColor& colour);

/// Mixes two colours, channel by channel: `Percent` measures the way upward from the darker
/// side, so the order of the two doesn't matter. Halves are rounded to even.
ColourNumber CalcMiddleColor(ColourNumber Color1, ColourNumber Color2, std::int16_t Percent);

}  // namespace Colours
