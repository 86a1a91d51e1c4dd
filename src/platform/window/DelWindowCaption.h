#pragma once

class QWidget;

/// Takes the system's caption bar and frame off a window, be it on screen or not. The place and
/// size of the whole window stay, so the inner area grows by what the frame took; a window that
/// is visible stays so, and active if it was.
void DelWindowCaption(QWidget* window);
