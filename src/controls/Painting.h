#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

/// Drawing that stays crisp at any scale factor: every edge lies on whole pixels of the screen,
/// and a line is as wide on each side of a box. Boxes are in device-independent pixels.
namespace Painting {

/// Fills a box.
void Fill(QPainter& painter, const QRectF& box, const QColor& colour);

/// Draws a frame just inside a box, `width` pixels wide; it fills the box if it is too wide.
void Frame(QPainter& painter, const QRectF& box, int width, const QColor& colour);

/// Draws the classic focus rectangle along the inside of a box: one dot drawn, one dot left out.
/// The dots invert what is under them, so drawing it twice takes it away. Draws nothing in an
/// empty box.
void DrawFocusRect(QPainter& painter, const QRectF& box);

/// Draws a caption centred into a box. A disabled one is faded toward what lies below it, be that
/// light or dark.
void DrawLabel(QPainter& painter, const QRect& box, const QFont& font, const QString& caption,
               const QColor& colour, bool isEnabled);

}  // namespace Painting
