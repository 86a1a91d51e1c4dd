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

/// A path for showing, with all its letters, and back.
inline QString PathToQString(std::string_view path) {
  return QString::fromStdString(Text::FromAlias(path).value_or(Text::ToUtf8(path)));
}
inline std::string PathFromQString(const QString& path) {
  const std::string utf8 = path.toStdString();
  return Text::AliasOf(utf8).value_or(Text::FromUtf8Lossy(utf8));
}

/// What the user typed or chose, as engine text; what Windows-1252 can't say becomes "?".
inline std::string FromQString(const QString& text) {
  return Text::FromUtf8Lossy(text.toStdString());
}
