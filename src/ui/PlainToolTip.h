#pragma once

#include <QString>

/// A text of a pack as a tooltip. The toolkit would take what looks like markup for markup, and
/// load what it names; and a line that isn't broken could be longer than the screen.
inline QString PlainToolTip(const QString& text) {
  constexpr qsizetype kMostLetters = 4000;
  return "<span>" + text.left(kMostLetters).toHtmlEscaped() + "</span>";
}
