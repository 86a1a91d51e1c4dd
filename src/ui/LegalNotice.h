#pragma once

#include <QString>

/// What the about window says of rights: ours and those of the libraries used.
QString LegalNotice();
