#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "support/TempFolder.h"
#include "ui/ChooseFile.h"
#include "ui/MessageBoxes.h"
#include "ui/cBrowseForFolder.h"

namespace {

class FileDialogs : public testing::Test {
 protected:
  void SetUp() override {
    folder_.Write("L\u00F6schen & 'Spiel'/gta_sa.exe", "");
    folder_.Write("a.kvpk", "");
  }
  [[nodiscard]] QString Native(const char* below) const {
    return QString::fromStdString(folder_.At(below).string());
  }
  // Answers the next dialog, once, as soon as it runs: with that file, or by going away.
  static void Answer(const QString& file = {}, const std::function<void(QFileDialog&)>& look = {}) {
    QTimer::singleShot(0, [=] {
      auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      if (look) look(*dialog);
      if (file.isEmpty()) return dialog->reject();
      dialog->selectFile(file);
      static_cast<QDialog*>(dialog)->accept();
    });
  }

  TempFolder folder_;
  FileSystem files_;
};

TEST_F(FileDialogs, AFolderComesBackAsPathTextOrNotAtAll) {
  cBrowseForFolder dialog(files_);
  dialog.Title = "title";
  Answer(Native("L\u00F6schen & 'Spiel'"),
         [](QFileDialog& shown) { EXPECT_EQ(shown.windowTitle(), "title"); });
  EXPECT_EQ(dialog.BrowseForFolder(), folder_.Dos("L\xF6schen & 'Spiel'"));
  for (const auto& [initial, start] : std::vector<std::pair<std::string, QString>>{
           {folder_.Dos("L\xD6SCHEN & 'spiel'"), Native("L\u00F6schen & 'Spiel'")},
           {folder_.Native().string(), QString::fromStdString(folder_.Native().string())},
           {folder_.Dos("missing"), {}},
           {folder_.Dos("a.kvpk"), {}},
           {"Q:\\", {}},
           {"*?", {}},
           {"", {}}}) {
    dialog.InitialDir = initial;
    Answer({}, [start = start](QFileDialog& shown) {
      EXPECT_TRUE(start.isEmpty() || shown.directory().absolutePath() == start);
    });
    EXPECT_EQ(dialog.BrowseForFolder(), "");
  }
}

TEST_F(FileDialogs, AFileMustExist) {
  ChooseFile dialog(files_);
  dialog.Title = "title";
  dialog.Filter = "Packs (*.kvpk)";
  Answer(Native("a.kvpk"), [](QFileDialog& shown) {
    EXPECT_EQ(shown.windowTitle(), "title");
    EXPECT_EQ(shown.nameFilters(), QStringList("Packs (*.kvpk)"));
    EXPECT_EQ(shown.fileMode(), QFileDialog::ExistingFile);
  });
  EXPECT_EQ(dialog.Show(), folder_.Dos("a.kvpk"));
  Answer();
  EXPECT_EQ(dialog.Show(), "");
}

// A German player is asked in German, whatever of the toolkit's translations is there.
TEST(MessageBoxes, AskInTheLanguageOfTheSystemWithNoAsTheDefault) {
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German));
  const auto afterwards = qScopeGuard([&] { QLocale::setDefault(before); });
  const auto answer = [&](bool byYes) {
    QTimer::singleShot(0, [=] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      QAbstractButton* const yes = box->button(QMessageBox::Yes);
      EXPECT_EQ(yes->text(), "&Ja");
      EXPECT_EQ(box->button(QMessageBox::No)->text(), "&Nein");
      EXPECT_EQ(box->textFormat(), Qt::PlainText) << "texts come from packs too";
      (byYes ? yes : box->defaultButton())->click();
    });
    return MessageBoxes::Native().Confirm(nullptr, "<b>Wirklich?</b>", "KELVO");
  };
  EXPECT_TRUE(answer(true));
  EXPECT_FALSE(answer(false));
}

}  // namespace
