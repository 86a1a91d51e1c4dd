#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QSize>
#include <QString>
#include <functional>

/// The fonts of the skin, in pixel sizes, so that the layout holds at any screen setting.
namespace Fonts {

/// Loads Tahoma and Marlett from where Debian's fonts-wine lays them, unless they are installed.
/// Call it once, after the application object exists; without either the closest sans face and
/// drawn glyphs serve.
void Load();

/// Text height of "Tahoma" 8.25 points: 11 pixels.
inline constexpr int kTextPixels = 11;

/// "Tahoma" in a pixel size.
QFont Tahoma(int pixels = kTextPixels);
/// "Marlett", the font of window glyphs, in a pixel size.
QFont Marlett(int pixels);

/// Whether the font is Marlett and isn't there, so that its letters have to be drawn.
bool NeedsDrawnGlyphs(const QFont& font);

/// Size of a caption in pixels. Line breaks count.
QSize CaptionSize(const QFont& font, const QString& caption);
/// The part of `box` that the letters of a caption drawn into it cover.
QRect InkBox(const QRect& box, const QFont& font, const QString& caption);
/// Has `print` draw a text in the painter's font. The bold that the toolkit makes of a plain face
/// gets thinner with each device pixel to a pixel; here it keeps its weight, by a second, fainter
/// print one of them to the right.
void PrintInWeight(QPainter& painter, const std::function<void()>& print);
/// Draws a caption into `box`, centred, in the painter's pen colour. Letters of Marlett are drawn
/// as shapes where the font is missing.
void DrawCaption(QPainter& painter, const QRect& box, const QFont& font, const QString& caption);
/// Draws the shape that a letter of Marlett stands for ("r" close, "0" minimise, "1" maximise, "2"
/// restore, "a" and "b" check mark) in the middle of `box`, `size` pixels to a side, in the pen's
/// colour. Other letters stand for nothing.
void DrawGlyph(QPainter& painter, const QRect& box, int size, QChar glyph);

}  // namespace Fonts
