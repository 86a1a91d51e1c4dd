#pragma once

class QWidget;

/// The widget of this program under the cursor, whoever has grabbed the mouse; null if there is
/// none. Asked anew at each call, from the cursor's place and not from an event.
QWidget* hWndByMouse();
