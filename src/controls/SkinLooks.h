#pragma once

#include <QColor>
#include <QFont>

#include "controls/Colours.h"

class QWidget;
class skinBtn;

/// The three looks that the skin gives its flat buttons. Each sets all colours, frames and fills
/// and shows the button anew; captions, fonts and places are the caller's.
namespace SkinLooks {

/// Buttons of the frame, the panel and the dialogs.
void ApplyWindowLook(skinBtn& button);
/// The tabs above the detail area.
void ApplyTabLook(skinBtn& button);
/// A link: the caption alone, without face, frame and shadow.
void ApplyLinkLook(skinBtn& button);

/// Sets the font of all three looks of a button.
void SetFont(skinBtn& button, const QFont& font);

/// The colours of a text that can be selected; the selection has the skin's.
void SetTextColours(QWidget& text, ColourNumber back, const QColor& fore);

}  // namespace SkinLooks
