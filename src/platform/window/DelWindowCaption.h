#pragma once

class QWidget;

/// Takes the system's caption bar off a window; place and size stay.
void DelWindowCaption(QWidget* window);
