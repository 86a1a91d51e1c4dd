#pragma once

#include <QLocale>
#include <QString>

/// The word for a truth, "Yes" or "No", in the language of `locale`: those of German and English,
/// else the toolkit's own button texts as the program has them translated.
QString YesNo(bool truth, const QLocale& locale = QLocale());
