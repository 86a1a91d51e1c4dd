#include <QLocale>
#include <QPainter>
#include <QTest>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "controls/Hand.h"
#include "controls/RenderedAt.h"
#include "controls/skinBtn.h"
#include "install/InstallSession.h"
#include "platform/FileSystem.h"
#include "support/RecordingHost.h"
#include "support/TempFolder.h"
#include "ui/EngineText.h"
#include "ui/OptionsPage.h"
#include "ui/ProgressPage.h"
#include "ui/SkinInputs.h"
#include "ui/YesNo.h"

namespace {

const std::string kWrong =
    "message Falsche Auswahl!: Dies ist nich das GTA San Andreas Installationsverzeichnis!";

class Options : public testing::Test {
 protected:
  void SetUp() override {
    folder_.Write("game/gta_sa.exe", "");
    folder_.Write("other/readme.txt", "");
    hand_.window.resize(400, 200);
    hand_.Open();
    page_.show();
  }

  // Everything that the page does to its neighbours, in order.
  const std::string& Note(const QString& what) {
    calls_.push_back(what.toStdString());
    return chosen_;
  }
  OptionsPage::Neighbours Recording() {
    return {.PlayClick = [this] { Note("click"); },
            .PlayMOD = [this] { Note("play"); },
            .StopMOD = [this] { Note("stop"); },
            .HidePanel = [this] { Note("hide"); },
            .OpenKELVOFile = [this](const std::string& path) { Note("open " + ToQString(path)); },
            .MessageBox = [this](const QString& text,
                                 const QString& title) { Note("message " + title + ": " + text); },
            .ChooseFolder =
                [this](const QString& title, const std::string& from) {
                  return Note(title + " from " + ToQString(from));
                },
            .ChooseFile = [this](const QString& title,
                                 const QString& filter) { return Note(title + " " + filter); }};
  }

  void Click(const QWidget* control) {
    hand_.MoveTo(control->mapTo(&hand_.window, control->rect().center()));
    hand_.Click();
  }
  // What has happened since the last time.
  std::vector<std::string> Calls() { return std::exchange(calls_, {}); }
  [[nodiscard]] std::string Ini() const { return folder_.Read("kelvo.ini"); }

  using Strings = std::vector<std::string>;

  TempFolder folder_;
  FileSystem files_;
  RecordingHost host_;
  RecordingOpener shell_;
  InstallSession session_{files_, host_, shell_, folder_.Dos("temp")};
  std::vector<std::string> calls_;
  std::string chosen_;
  Hand hand_;
  OptionsPage page_{&hand_.window, session_, files_, folder_.Dos("kelvo.ini"), Recording()};
};

TEST_F(Options, OkStoresAGameDirectoryAndRefusesAnyOther) {
  for (const std::string& directory : {std::string(), folder_.Dos("other"), std::string("Q:\\"),
                                       folder_.Dos("game\\gta_sa.exe")}) {
    session_.SAInstallDir = directory;
    page_.ShowDirectory();
    Click(page_.cmdOK);
    EXPECT_EQ(Calls(), (Strings{"click", kWrong})) << directory;
  }
  EXPECT_EQ(Ini(), "(missing)");

  session_.SAInstallDir = folder_.Dos("game") + "\\";
  page_.ShowDirectory();
  Click(page_.cmdOK);
  EXPECT_EQ(Calls(), (Strings{"click", "hide"}));
  EXPECT_EQ(Ini(), "[Settings]\r\nSA_InstallDir=" + folder_.Dos("game") + "\\\r\n");
}

TEST_F(Options, TypingTakesEffectAtOnceButIsStoredWithOkOnly) {
  page_.txtSAInstallDir->setFocus();
  QTest::keyClicks(page_.txtSAInstallDir, "D:\\L");
  EXPECT_EQ(session_.SAInstallDir, "D:\\L");
  page_.txtSAInstallDir->insert("\u00F6\u20AC\u0416");
  EXPECT_EQ(session_.SAInstallDir, "D:\\L\xF6\x80{u416}");
  page_.txtSAInstallDir->clear();
  EXPECT_EQ(session_.SAInstallDir, "");
  EXPECT_EQ(Ini(), "(missing)");
  EXPECT_EQ(Calls(), Strings());

  // Each byte of the engine's text comes back from the box as it was.
  for (int byte = 0x21; byte <= 0xFF; ++byte) session_.SAInstallDir += static_cast<char>(byte);
  const std::string all = session_.SAInstallDir;
  page_.ShowDirectory();
  EXPECT_EQ(session_.SAInstallDir, all);
}

TEST_F(Options, AChosenFolderIsTakenIfItIsTheGames) {
  const std::string asked = "GTA San Andreas Installationsverzsichnis suchen from X:\\before";
  session_.SAInstallDir = "X:\\before";
  page_.ShowDirectory();
  const auto choose = [&](const std::string& folder) {
    chosen_ = folder;
    Click(page_.cmdSelectSAInstallDir);
    return Calls();
  };
  EXPECT_EQ(choose(""), (Strings{"click", asked})) << "cancelled";
  EXPECT_EQ(choose(folder_.Dos("other")), (Strings{"click", asked, kWrong}));
  EXPECT_EQ(page_.txtSAInstallDir->text(), "X:\\before");
  EXPECT_EQ(session_.SAInstallDir, "X:\\before");
  EXPECT_EQ(choose(folder_.Dos("game")), (Strings{"click", asked}));
  EXPECT_EQ(session_.SAInstallDir, chosen_);
  EXPECT_EQ(Ini(), "(missing)");
}

TEST_F(Options, AChosenFileIsOpenedIfItIsAPackThatExists) {
  folder_.Write("a.kvpk", "");
  folder_.Write("B.KVPK", "");
  folder_.Write("c.img", "");
  folder_.MakeFolder("d.kvpk");
  for (const auto& [name, opens] : {std::pair("a.kvpk", true),
                                    {"b.kvpk", true},
                                    {"c.img", false},
                                    {"d.kvpk", false},
                                    {"e.kvpk", false}}) {
    chosen_ = folder_.Dos(name);
    Click(page_.cmdOtherModPack);
    Strings expected{"click", "Modpack öffnen Moddock Modpack (*.kvpk)"};
    if (opens) expected.push_back("open " + chosen_);
    EXPECT_EQ(Calls(), expected);
  }
}

TEST_F(Options, TheMusicIsStoredAndSwitchedAtEachChange) {
  page_.SetMusic(0);  // as it is
  EXPECT_EQ(Calls(), Strings());
  page_.SetMusic(1);
  EXPECT_EQ(Calls(), (Strings{"click", "play"}));
  EXPECT_EQ(Ini(), "[Settings]\r\nPlayMusic=1\r\n");
  EXPECT_EQ(page_.chkMusik->text(), YesNo(true));
  Click(page_.chkMusik);
  EXPECT_EQ(Calls(), (Strings{"click", "stop"}));
  EXPECT_EQ(Ini(), "[Settings]\r\nPlayMusic=0\r\n");
  EXPECT_EQ(page_.chkMusik->text(), YesNo(false));
  page_.chkMusik->setFocus();
  QTest::keyClick(page_.chkMusik, Qt::Key_Space);
  EXPECT_EQ(Calls(), (Strings{"click", "play"}));
}

TEST(Words, ForYesAndNoAreTheLanguages) {
  EXPECT_EQ(YesNo(true, QLocale(QLocale::German, QLocale::Switzerland)), "Ja");
  EXPECT_EQ(YesNo(false, QLocale(QLocale::German)), "Nein");
  EXPECT_EQ(YesNo(true, QLocale(QLocale::English)), "Yes");
  // Nothing is translated here; what matters is that no mark of a key is left.
  EXPECT_EQ(YesNo(false, QLocale(QLocale::French)), "No");
}

TEST(Progress, AStatusStaysWithinItsPlace) {
  QWidget panel;
  ProgressPage page(&panel);
  const QRect place = page.lblStatus->geometry();
  QImage before = RenderedAt(page, 1);
  page.SetStatus(QString(400, 'W') + "\nsecond");
  QImage after = RenderedAt(page, 1);
  EXPECT_NE(before.copy(place), after.copy(place));
  for (QImage* const image : {&before, &after}) QPainter(image).fillRect(place, Qt::red);
  EXPECT_EQ(before, after) << "all around it";
}

}  // namespace
