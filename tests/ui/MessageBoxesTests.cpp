#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>

#include <gtest/gtest.h>

#include "ui/MessageBoxes.h"

namespace {

// A German player is asked in German, whatever of the toolkit's translations is there.
TEST(MessageBoxes, AskInTheLanguageOfTheSystemWithNoAsTheDefault) {
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German));
  const auto afterwards = qScopeGuard([&] { QLocale::setDefault(before); });
  QString yes;
  QString no;
  bool isPlain = false;
  const auto answer = [&](bool byYes) {
    QTimer::singleShot(0, [&, byYes] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      yes = box->button(QMessageBox::Yes)->text();
      no = box->button(QMessageBox::No)->text();
      isPlain = box->textFormat() == Qt::PlainText;
      QAbstractButton* const chosen = byYes ? box->button(QMessageBox::Yes) : box->defaultButton();
      chosen->click();
    });
    return MessageBoxes::Native().Confirm(nullptr, "<b>Wirklich?</b>", "KELVO");
  };
  EXPECT_TRUE(answer(true));
  EXPECT_FALSE(answer(false));
  EXPECT_EQ(yes, "&Ja");
  EXPECT_EQ(no, "&Nein");
  EXPECT_TRUE(isPlain) << "texts come from packs too";
}

}  // namespace
