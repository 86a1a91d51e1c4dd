#include "ui/YesNo.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

// Without the mark of a key: "&Oui", or "\u306F\u3044(&Y)" where letters have no keys.
QString WithoutMark(QString text) {
  static const QRegularExpression kKeyInBrackets(R"(\s*\(&.\))");
  return text.remove(kKeyInBrackets).remove('&');
}

}  // namespace

QString YesNo(bool truth, const QLocale& locale) {
  if (locale.language() == QLocale::German) return truth ? "Ja" : "Nein";
  if (locale.language() == QLocale::English) return truth ? "Yes" : "No";
  return WithoutMark(QCoreApplication::translate("QPlatformTheme", truth ? "&Yes" : "&No"));
}
