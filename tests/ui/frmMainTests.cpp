#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "controls/ngBtn.h"
#include "controls/skinBtn.h"
#include "controls/tc_PBar.h"
#include "platform/Text.h"
#include "ui/CatalogueLists.h"
#include "ui/DetailView.h"
#include "ui/HtmlStrip.h"
#include "ui/PictureSurface.h"
#include "ui/ProgressPage.h"
#include "ui/TitleLabel.h"
#include "ui/WindowFixture.h"
#include "ui/frmLoading.h"
#include "ui/frmMain.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kDone = "information: KELVO: Installation der Modifikationen abgeschlossen.";

bool SplashIsThere() {
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    if (qobject_cast<const frmLoading*>(window) != nullptr && window->isVisible()) return true;
  }
  return false;
}

bool PanelComesUp(const frmMain& window) {
  return window.panel->tmrPanelUp().Enabled || window.panel->tmrPanelUp().Interval == 0;
}

TEST_F(MainWindow, StartsWithThePackOfTheCommandLine) {
  WritePack(Folder, "Mein Paket.kvpk", Index());
  WritePack(Folder, "program/anderes.kvpk", Index("Title=Anderes\r\n"));
  WriteIni("SA_InstallDir=" + Folder.Dos("game") + "\r\nPosition=40,30,700,600\r\n");
  frmMain& window = Start("\"" + Folder.Dos("Mein Paket.kvpk") + "\"");

  EXPECT_EQ(window.lblTitel->Caption(), "Probe");
  EXPECT_EQ(window.lblTitel2->Caption(), "Probe");
  EXPECT_EQ(window.lblTitel->geometry().right(), window.cmdClose->geometry().right());
  EXPECT_EQ(window.geometry(), QRect(40, 30, 700, 600));
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_EQ(window.lists->CurType, 1);
  EXPECT_EQ(window.detail->txtDescription->toPlainText(), "Typ eins");
  EXPECT_FALSE(SplashIsThere());
  EXPECT_FALSE(PanelComesUp(window));
  EXPECT_EQ(window.picSAInstallDir->txtSAInstallDir->text().toStdString(), Folder.Dos("game"));
  EXPECT_EQ(window.minimumSize(), QSize(600, 250));
  EXPECT_THAT(Library.Calls, ElementsAre("tune"));
}

TEST_F(MainWindow, TakesTheFirstPackBesideTheProgram) {
  WritePack(Folder, "program/b.kvpk", Index("Title=Zweites\r\n"));
  WritePack(Folder, "program/A.KVPK", Index("Title=Erstes\r\n"));
  WriteIni("PlayMusic=0\r\n");
  frmMain& window = Start();
  EXPECT_EQ(window.lblTitel->Caption(), "Erstes");
  EXPECT_TRUE(PanelComesUp(window)) << "nothing says where the game is";
  EXPECT_THAT(Library.Calls, IsEmpty());
}

TEST_F(MainWindow, WorksWithoutAPack) {
  frmMain& window = Start();
  EXPECT_FALSE(SplashIsThere());
  EXPECT_TRUE(PanelComesUp(window));
  EXPECT_TRUE(window.picSAInstallDir->isVisibleTo(window.panel->picPanel));
  EXPECT_EQ(window.lists->CurType, 0);
  EXPECT_EQ(window.size(), Layout::kDesignSize);
  // The way to a first pack, by the mouse.
  WritePack(Folder, "erstes.kvpk", Index());
  window.picSAInstallDir->OpenIfPack(Folder.Dos("erstes.kvpk"));
  EXPECT_EQ(window.lists->CurType, 1);
}

TEST_F(MainWindow, FindsTheGameByTheRegistry) {
  Folder.Write("prefix/system.reg",
               "WINE REGISTRY Version 2\n\n"
               "[Software\\\\Rockstar Games\\\\GTA San Andreas\\\\Installation] 1\n\"ExePath\"=\"" +
                   Text::Replace(Folder.Dos("game"), "\\", "\\\\") + "\\\\gta_sa.exe\"\n");
  Folder.MakeFolder("prefix/dosdevices");
  std::filesystem::create_directory_symlink("/", Folder.At("prefix/dosdevices/z:"));
  Registry.prefixes = {Folder.At("prefix")};
  WritePack(Folder, "program/p.kvpk", Index());
  frmMain& window = Start();
  EXPECT_EQ(window.Session().SAInstallDir, Text::LowerCase(Folder.Dos("game")));
  EXPECT_FALSE(PanelComesUp(window));
  window.close();
  EXPECT_THAT(Folder.Read("program/kelvo.ini"), Not(HasSubstr("SA_InstallDir")));
}

struct Position {
  const char* text;
  QRect box;
};

TEST_F(MainWindow, KeepsItsPlaceInTheSettings) {
  for (const Position& row : {Position{"40,30,700,600", {40, 30, 700, 600}},
                              Position{"-2000,30,100,600", {-2000, 30, 480, 600}},
                              Position{"10,20,500,100,9", {10, 20, 500, 250}}}) {
    WriteIni(std::string("Position=") + row.text + "\r\n");
    EXPECT_EQ(Start().geometry(), row.box) << row.text;
    Window->setGeometry(11, 12, 713, 614);
    Window->close();
    EXPECT_THAT(Folder.Read("program/kelvo.ini"), HasSubstr("Position=11,12,713,614"));
  }
  Start().showMaximized();
  Window->close();
  EXPECT_THAT(Folder.Read("program/kelvo.ini"), HasSubstr("Position=11,12,713,614"));
}

TEST_F(MainWindow, SkipsTheRestAfterABrokenSetting) {
  WritePack(Folder, "program/p.kvpk", Index());
  for (const char* const broken : {"1,2,3", "1,2,x,4", "1,2,40000,4", ""}) {
    WriteIni(std::string("Position=") + broken + "\r\n");
    EXPECT_TRUE(Start().isVisible());
    EXPECT_EQ(Window->lblTitel->Caption(), "") << broken << ": no pack, the start ended";
    EXPECT_FALSE(Files.FindFirst(Folder.Dos("program\\*.*"), kFindFolders) == "inst_temp");
  }
  WriteIni("PlayMusic=laut\r\nSA_InstallDir=" + Folder.Dos("game") + "\r\n");
  frmMain& window = Start();
  EXPECT_EQ(window.lblTitel->Caption(), "Probe");
  EXPECT_EQ(window.picSAInstallDir->txtSAInstallDir->text(), "");
  EXPECT_FALSE(window.lists->ListsEnabled);
}

TEST_F(MainWindow, InstallsTheTickedModsInOrder) {
  WritePack(Folder, "program/p.kvpk",
            Index("EndScript=AddLine {<nl>data\\a.txt<nl>eins<nl>Ende<nl>}\r\n"));
  WriteIni("SA_InstallDir=" + Folder.Dos("game") + "\r\n");
  frmMain& window = Start();
  window.Session().Pack.Mods[2].Selected = false;
  OnMessage = [&] {
    EXPECT_FALSE(window.Session().InstallRunning);
    window.cmdInstall_Click();  // the run is still on
  };
  window.cmdInstall_Click();
  // Each text goes in front of the line that it is added at, so the last stands last of them.
  EXPECT_EQ(Folder.Read("game/data/a.txt"), "eins\r\nEnde\r\nvon A\r\n");
  EXPECT_THAT(Messages, ElementsAre(kDone));
  EXPECT_FALSE(window.Session().Pack.Mods[2].Selected);
  EXPECT_TRUE(window.picInstallProgrress->isVisibleTo(window.panel->picPanel));
  Messages.clear();
  OnMessage = {};
  window.cmdInstall_Click();
  EXPECT_THAT(Messages, ElementsAre(kDone)) << "a second run works like the first";
}

TEST_F(MainWindow, SendsTheUserToTheOptionsWithoutADirectory) {
  WritePack(Folder, "program/p.kvpk", Index());
  frmMain& window = Start();
  window.picSAInstallDir->txtSAInstallDir->clear();
  window.cmdInstall_Click();
  EXPECT_THAT(Messages, IsEmpty());
  EXPECT_TRUE(window.picSAInstallDir->isVisibleTo(window.panel->picPanel));
}

TEST_F(MainWindow, AsksBeforeItIsClosedDuringARun) {
  WritePack(Folder, "program/p.kvpk", Index());
  WriteIni("SA_InstallDir=" + Folder.Dos("game") + "\r\nPosition=1,2,600,500\r\n");
  frmMain& window = Start();
  QTest::qWait(20);  // so that the run's first round of events comes at once
  QTimer::singleShot(0, &window, [&] { window.close(); });
  window.cmdInstall_Click();
  ASSERT_EQ(Messages.size(), 2U);
  EXPECT_EQ(Messages[0],
            "confirm: KELVO Beenden: Die Installation ist noch nicht abgeschlossen.\r\n"
            "Wenn Sie dieses Programm jetzt schließen ist Ihre GTA San Andreas Installation "
            "möglicherweise zerstört.\r\n\r\nWirklich beenden?");
  EXPECT_EQ(Messages[1], kDone);
  EXPECT_TRUE(window.isVisible());
  EXPECT_THAT(Folder.Read("game/data/a.txt"), HasSubstr("von B"));

  Answer = true;
  EXPECT_EXIT(
      {
        QTest::qWait(20);
        QTimer::singleShot(0, &window, [&] { window.close(); });
        window.cmdInstall_Click();
      },
      testing::ExitedWithCode(0), "");
  EXPECT_THAT(Folder.Read("program/kelvo.ini"), HasSubstr("Position=1,2,600,500"));
  EXPECT_FALSE(Files.FindFirst(Folder.Dos("program\\inst_temp"), kFindFolders).empty());
}

TEST_F(MainWindow, RemovesItsTempFolderUnlessSomethingElseIsInIt) {
  Start();
  Folder.Write("program/inst_temp/rest.tmp", "x");
  Window->close();
  EXPECT_TRUE(Files.FindFirst(Folder.Dos("program\\inst_temp"), kFindFolders).empty());
  EXPECT_THAT(Library.Calls.back(), "stop");

  Start();
  Folder.Write("program/inst_temp/rest.tmp", "x");
  Folder.Write("program/inst_temp/fremd/datei", "x");
  Window->close();
  EXPECT_EQ(Files.FindAll(Folder.Dos("program\\inst_temp\\*.*"), kFindFolders),
            (std::vector<std::string>{"fremd"}));
}

TEST_F(MainWindow, GivesThePackPageItsStrip) {
  WritePack(Folder, "program/p.kvpk",
            Index("Title=Lang\r\nHTML=<b>Hallo</b>\r\nHTMLHeight=120\r\n"));
  frmMain& window = Start();
  EXPECT_FALSE(window.html->isHidden());
  EXPECT_EQ(window.html->geometry(), QRect(0, 48, 675, 120));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.html->toPlainText().contains("Hallo"); }));
  EXPECT_EQ(window.lists->picTypeList->y(), 176);
  EXPECT_EQ(window.minimumSize(), QSize(600, 370));

  WritePack(Folder, "ohne.kvpk", Index());
  window.OpenKELVOFile(Folder.Dos("ohne.kvpk"));
  EXPECT_TRUE(window.html->isHidden());
  EXPECT_EQ(window.minimumSize(), QSize(600, 250));
  EXPECT_EQ(window.lists->picTypeList->y(), 176) << "the lists stay until the next change of size";
  window.resize(700, 600);
  EXPECT_EQ(window.lists->picTypeList->y(), 56);
}

TEST_F(MainWindow, KeepsTheOldPackIfTheNewOneIsNone) {
  WritePack(Folder, "program/p.kvpk", Index());
  frmMain& window = Start();
  Folder.Write("kein.kvpk", "This is no archive at all.");
  window.OpenKELVOFile(Folder.Dos("kein.kvpk"));
  EXPECT_EQ(window.lblTitel->Caption(), "Probe");
  EXPECT_EQ(window.Session().Pack.Mods.size(), 4U);
  EXPECT_THAT(Messages, IsEmpty());
  EXPECT_FALSE(SplashIsThere());

  WriteArchive(Folder, "leer.kvpk", {{"bild.png", "x"}});
  window.OpenKELVOFile(Folder.Dos("leer.kvpk"));
  ASSERT_EQ(Messages.size(), 1U);
  EXPECT_THAT(Messages[0], testing::StartsWith("plain: EncryptFile: Error: "));
  EXPECT_EQ(window.lblTitel->Caption(), "");
  EXPECT_EQ(window.Session().Pack.ModTypes.size(), 1U);
}

TEST_F(MainWindow, LetsNothingElseIntoAnOpening) {
  WritePack(Folder, "zweites.kvpk", Index("Title=Zweites\r\n"));
  WriteArchive(Folder, "leer.kvpk", {{"bild.png", "x"}});
  WriteIni("SA_InstallDir=" + Folder.Dos("game") + "\r\n");
  frmMain& window = Start();
  // The message of a pack without an index is a place where events run.
  OnMessage = [&] {
    window.OpenKELVOFile(Folder.Dos("zweites.kvpk"));
    window.cmdInstall_Click();
  };
  window.OpenKELVOFile(Folder.Dos("leer.kvpk"));
  EXPECT_EQ(window.lblTitel->Caption(), "");
  EXPECT_EQ(Messages.size(), 1U);
}

TEST_F(MainWindow, KeepsASmallSizeUntilItChanges) {
  WritePack(Folder, "program/p.kvpk", Index("HTML=x\r\nHTMLHeight=32000\r\n"));
  WriteIni("Position=10,20,500,300\r\n");
  frmMain& window = Start();
  EXPECT_EQ(window.geometry(), QRect(10, 20, 500, 300));
  window.resize(501, 301);
  EXPECT_LE(window.height(), window.screen()->size().height()) << "it can be reached";
}

TEST_F(MainWindow, SwitchesTheLogOnByATypedWord) {
  frmMain& window = Start();
  window.SetStatus("vorher");
  const auto type = [&](const char* word) {
    for (; *word != 0; ++word) QTest::keyClick(window.windowHandle(), *word);
  };
  type("llogswitch");
  EXPECT_FALSE(window.Log().LogEnabled) << "the second letter starts the word again";
  type("xlogswitch");
  EXPECT_TRUE(window.Log().LogEnabled);
  window.SetStatus("nachher");
  EXPECT_THAT(Folder.Read("program/kelvo.log"), testing::EndsWith("\tnachher\r\n"));
  EXPECT_THAT(Folder.Read("program/kelvo.log"), Not(HasSubstr("vorher")));
}

TEST_F(MainWindow, DisablesNineControlsUnderThePanel) {
  WritePack(Folder, "program/p.kvpk", Index());
  frmMain& window = Start();
  while (window.panel->tmrPanelUp().Interval != 0) window.panel->tmrPanelUp_Timer();
  const auto usable = [&] {
    std::vector<bool> states;
    for (QWidget* const control :
         {static_cast<QWidget*>(window.lists->picTypeList),
          static_cast<QWidget*>(window.lists->picModList),
          static_cast<QWidget*>(window.detail->picDescPic),
          static_cast<QWidget*>(window.cmdInstall), static_cast<QWidget*>(window.cmdOptions),
          static_cast<QWidget*>(window.cmdAbout), static_cast<QWidget*>(window.cmdExit)}) {
      states.push_back(control->isEnabled());
    }
    for (const skinBtn* const tab : {window.detail->cmdPicture, window.detail->cmdDescription}) {
      states.push_back(tab->Enabled());
    }
    return states;
  };
  EXPECT_THAT(usable(), testing::Each(false));
  EXPECT_TRUE(window.cmdHelp->isEnabled());
  EXPECT_TRUE(window.cmdClose->Enabled());
  EXPECT_TRUE(window.cmdMinimize->Enabled());
  EXPECT_TRUE(window.cmdDockLink->Enabled());
  window.panel->EnableDown();
  window.panel->tmrPanelDown_Timer();
  EXPECT_THAT(usable(), testing::Each(true));
}

TEST_F(MainWindow, MovesByItsTitleStripOnly) {
  frmMain& window = Start();
  const auto drag = [&](QPoint from, Qt::MouseButton button = Qt::LeftButton) {
    const QPoint before = window.pos();
    QTest::mousePress(window.windowHandle(), button, {}, from);
    QTest::mouseMove(window.windowHandle(), from + QPoint(30, 20));
    // The window has moved with the mouse, if at all.
    QTest::mouseRelease(window.windowHandle(), button, {},
                        from + QPoint(30, 20) - (window.pos() - before));
    return window.pos() - before;
  };
  EXPECT_EQ(drag({300, 52}), QPoint(0, 0)) << "below the strip";
  EXPECT_EQ(drag({640, 15}), QPoint(0, 0)) << "on a button";
  EXPECT_EQ(drag({300, 20}), QPoint(30, 20));
  EXPECT_EQ(drag({300, 20}, Qt::RightButton), QPoint(30, 20));

  const QPoint before = window.pos();
  QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, {300, 20});
  QMouseEvent move(QEvent::MouseMove, {310, 20}, before + QPoint(310, 20), {}, {}, {});
  QApplication::sendEvent(window.windowHandle(), &move);
  EXPECT_EQ(window.pos(), before) << "the release was lost";
  QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, {300, 20});
}

TEST_F(MainWindow, OpensADroppedPack) {
  WritePack(Folder, "fallen gelassen.kvpk", Index());
  frmMain& window = Start();
  QMimeData data;
  data.setUrls(
      {QUrl::fromLocalFile(QString::fromStdString(Folder.At("fallen gelassen.kvpk").string()))});
  QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.lblTitel->Caption() == "Probe"; }));
}

TEST_F(MainWindow, OpensTheCommunityPage) {
  frmMain& window = Start();
  window.cmdDockLink_Click();
  QTest::mouseClick(window.lblDockLink, Qt::LeftButton);
  ASSERT_EQ(Shell.Opened.size(), 2U);
  EXPECT_EQ(Shell.Opened[0], Shell.Opened[1]);
  EXPECT_THAT(Shell.Opened[0], testing::StartsWith("http"));
}

TEST_F(MainWindow, ShowsStatusAndProgressOfTheEngine) {
  frmMain& window = Start();
  window.SetStatus("F\xFCge Zeile hinzu...gta.dat");
  EXPECT_EQ(window.picInstallProgrress->lblStatus->text(), "Füge Zeile hinzu...gta.dat");
  window.SetTotalProgressMax(7);
  window.SetTotalProgress(3);
  EXPECT_EQ(window.picInstallProgrress->pBarFortschritt->Value(), 3);
  window.SetModProgressMax(20);
  window.SetModProgress(21);
  EXPECT_EQ(window.ModProgress(), 0) << "above the top";
}

}  // namespace
