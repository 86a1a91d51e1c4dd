#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "platform/Text.h"

/// The border between the engine's text and the toolkit's.

/// Engine text (Windows-1252) for showing. Never fails.
inline QString ToQString(std::string_view text) {
  return QString::fromStdU16String(Text::ToUtf16(text));
}

/// What the user typed or chose, as engine text; what Windows-1252 can't say becomes "?".
inline std::string FromQString(const QString& text) {
  return Text::FromUtf8Lossy(text.toStdString());
}
