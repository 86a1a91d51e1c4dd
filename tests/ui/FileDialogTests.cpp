#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QObject>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "support/TempFolder.h"
#include "ui/ChooseFile.h"
#include "ui/cBrowseForFolder.h"

namespace {

using Answer = std::function<void(QFileDialog&)>;

// Answers the next dialog, once, as soon as it runs.
class Answerer : public QObject {
 public:
  void Wait(Answer answer) {
    answer_ = std::move(answer);
    timer_ = startTimer(0);
  }

 protected:
  void timerEvent(QTimerEvent* /*event*/) override {
    killTimer(timer_);
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    answer_(*dialog);
  }

 private:
  Answer answer_;
  int timer_ = 0;
};

class FileDialogs : public testing::Test {
 protected:
  void SetUp() override {
    folder_.Write("L\u00F6schen & 'Spiel'/gta_sa.exe", "");
    folder_.Write("a.kvpk", "");
  }
  [[nodiscard]] QString Native(const char* below) const {
    return QString::fromStdString(folder_.At(below).string());
  }

  void Then(Answer answer) { answerer_.Wait(std::move(answer)); }

  TempFolder folder_;
  FileSystem files_;
  Answerer answerer_;
};

TEST_F(FileDialogs, AFolderComesBackAsPathTextOrNotAtAll) {
  cBrowseForFolder dialog(files_);
  EXPECT_EQ(dialog.Title, "Choose Folder");
  dialog.Title = "title";
  Then([&](QFileDialog& shown) {
    EXPECT_EQ(shown.windowTitle(), "title");
    shown.selectFile(Native("L\u00F6schen & 'Spiel'"));
    static_cast<QDialog&>(shown).accept();
  });
  EXPECT_EQ(dialog.BrowseForFolder(), folder_.Dos("L\xF6schen & 'Spiel'"));
  Then([](QFileDialog& shown) { shown.reject(); });
  EXPECT_EQ(dialog.BrowseForFolder(), "");
}

TEST_F(FileDialogs, TheInitialFolderIsWhereItStartsIfItIsThere) {
  cBrowseForFolder dialog(files_);
  const std::vector<std::pair<std::string, QString>> cases = {
      {folder_.Dos("L\xD6SCHEN & 'spiel'"), Native("L\u00F6schen & 'Spiel'")},
      {folder_.At("L\u00F6schen & 'Spiel'").parent_path().string(),
       QString::fromStdString(folder_.Native().string())}};
  for (const auto& [initial, start] : cases) {
    dialog.InitialDir = initial;
    Then([start = start](QFileDialog& shown) {
      EXPECT_EQ(shown.directory().absolutePath(), start);
      shown.reject();
    });
    EXPECT_EQ(dialog.BrowseForFolder(), "");
  }
  for (const std::string& initial : {folder_.Dos("missing"), folder_.Dos("a.kvpk"),
                                     std::string("Q:\\"), std::string("*?"), std::string()}) {
    dialog.InitialDir = initial;
    Then([](QFileDialog& shown) { shown.reject(); });
    EXPECT_EQ(dialog.BrowseForFolder(), "");
  }
}

TEST_F(FileDialogs, AFileMustExist) {
  ChooseFile dialog(files_);
  dialog.Title = "title";
  dialog.Filter = "Packs (*.kvpk)";
  Then([&](QFileDialog& shown) {
    EXPECT_EQ(shown.windowTitle(), "title");
    EXPECT_EQ(shown.nameFilters(), QStringList("Packs (*.kvpk)"));
    EXPECT_EQ(shown.fileMode(), QFileDialog::ExistingFile);
    shown.selectFile(Native("a.kvpk"));
    static_cast<QDialog&>(shown).accept();
  });
  EXPECT_EQ(dialog.Show(), folder_.Dos("a.kvpk"));
  Then([](QFileDialog& shown) { shown.reject(); });
  EXPECT_EQ(dialog.Show(), "");
}

}  // namespace
