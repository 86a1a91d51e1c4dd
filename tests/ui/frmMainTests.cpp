#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <set>

#include "controls/ngBtn.h"
#include "controls/skinBtn.h"
#include "pack/ZlibStream.h"
#include "platform/FolderLock.h"
#include "platform/Text.h"
#include "ui/CatalogueLists.h"
#include "ui/DetailView.h"
#include "ui/HtmlStrip.h"
#include "ui/PictureSurface.h"
#include "ui/ProgressPage.h"
#include "ui/TitleLabel.h"
#include "ui/WindowFixture.h"
#include "ui/frmAbout.h"
#include "ui/frmLoading.h"
#include "ui/frmMain.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kDone = "information: KELVO: Installation der Modifikationen abgeschlossen.";

bool SplashIsThere() {
  const QWidgetList windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
    return qobject_cast<const frmLoading*>(window) != nullptr && window->isVisible();
  });
}

bool PanelComesUp(const frmMain& window) {
  return window.panel->tmrPanelUp().Enabled || window.panel->tmrPanelUp().Interval == 0;
}

TEST_F(MainWindow, StartsWithThePackOfTheCommandLine) {
  WritePack(Folder, "Mein Paket.kvpk", Index());
  WritePack(Folder, "program/anderes.kvpk", Index("Title=Anderes\r\n"));
  WriteIniWithGame("Position=40,30,700,600\r\n");
  frmMain& window = Start("\"" + Folder.Dos("Mein Paket.kvpk") + "\"");

  EXPECT_EQ(window.lblTitel->Caption(), "Probe");
  EXPECT_EQ(window.lblTitel2->Caption(), "Probe");
  EXPECT_EQ(window.lblTitel->geometry().right(), window.cmdClose->geometry().right());
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

TEST_F(MainWindow, FetchesThePicturesOfItsButtonsForEachScreen) {
  frmMain& window = Start();
  for (const double ratio : {1.0, 2.0, 1.0}) {
    QImage screen(88, 31, QImage::Format_RGB32);
    screen.setDevicePixelRatio(ratio);
    window.cmdInstall->render(&screen);
    EXPECT_EQ(window.cmdInstall->PicMouseUpOff().devicePixelRatio(), ratio);
  }
}

TEST_F(MainWindow, WorksWithoutAPack) {
  frmMain& window = Start();
  EXPECT_FALSE(SplashIsThere());
  EXPECT_TRUE(PanelComesUp(window));
  EXPECT_TRUE(window.picSAInstallDir->isVisibleTo(window.panel->picPanel));
  EXPECT_EQ(window.size(), Layout::kDesignSize);
  QTest::keyClick(window.lists->picTypeList, Qt::Key_Down);
  QTest::mouseClick(window.lists->picModList, Qt::LeftButton, {}, {5, 5});
  EXPECT_EQ(window.lists->CurType, 0);
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
  frmMain& window = StartWithPack();
  EXPECT_EQ(window.Session().SAInstallDir, Text::LowerCase(Folder.Dos("game")));
  EXPECT_FALSE(PanelComesUp(window));
  window.close();
  EXPECT_THAT(Ini(), Not(HasSubstr("SA_InstallDir")));
}

TEST_F(MainWindow, KeepsItsPlaceInTheSettings) {
  for (const auto& [text, box] : {std::pair("40,30,700,600", QRect(40, 30, 700, 600)),
                                  {"-2000,30,100,600", {-2000, 30, 480, 600}},
                                  {"5,5,32767,32767", {5, 5, 800, 800}},  // the desktop's size
                                  {"10,20,500,100,9", {10, 20, 500, 250}}}) {
    WriteIni(std::string("Position=") + text + "\r\n");
    EXPECT_EQ(Start().geometry(), box) << text;
    Window->setGeometry(11, 12, 713, 614);
    Window->close();
    EXPECT_THAT(Ini(), HasSubstr("Position=11,12,713,614"));
  }
  Start().showMaximized();
  Window->close();
  EXPECT_THAT(Ini(), HasSubstr("Position=11,12,713,614"));
}

TEST_F(MainWindow, SkipsTheRestAfterABrokenSetting) {
  WritePack(Folder, "program/p.kvpk", Index());
  for (const char* const broken : {"1,2,3", "1,2,x,4", "1,2,40000,4", ""}) {
    WriteIni(std::string("Position=") + broken + "\r\n");
    EXPECT_TRUE(Start().isVisible());
    EXPECT_EQ(Window->lblTitel->Caption(), "") << broken << ": no pack, the start ended";
  }
  WriteIniWithGame("PlayMusic=laut\r\n");
  frmMain& window = Start();
  EXPECT_EQ(window.lblTitel->Caption(), "Probe");
  EXPECT_EQ(window.picSAInstallDir->txtSAInstallDir->text(), "");
  EXPECT_FALSE(window.lists->ListsEnabled);
}

TEST_F(MainWindow, AsksAheadOfAnInstallThatIsNotAsExpected) {
  WriteIniWithGame();
  const std::string script =
      "[Mod1]\r\nTypeID=1\r\nName=A\r\nInstallScript=Copy {<nl>data<nl>p<nl>}<nl>"
      "ShellExecute {<nl>x.exe<nl>}\r\n[Typ1]\r\nTypeID=1\r\nName=T\r\n";
  WritePack(Folder, "program/p.kvpk", script, {{"p", "no stream"}});
  frmMain& window = Start();
  const std::vector<std::string> damage{
      "confirm: KELVO: Das Modpack ist beschädigt: p. Trotzdem installieren?"};
  window.cmdInstall_Click();
  EXPECT_EQ(std::exchange(Messages, {}), damage);
  EXPECT_EQ(window.picInstallProgrress->lblStatus->text(), "Prüfe Modpack...");
  EXPECT_TRUE(Shell.Opened.empty());
  WritePack(Folder, "program/p.kvpk", script, {{"p", Compressed("the payload")}});
  window.OpenKELVOFile(Folder.Dos("program/p.kvpk"));
  const std::string deeds = "consent: KELVO: A: öffnet x.exe";
  window.cmdInstall_Click();
  EXPECT_EQ(std::exchange(Messages, {}), std::vector{deeds});
  EXPECT_EQ(Folder.Read("game/data/p"), "(missing)");
  Answer = true;
  window.cmdInstall_Click();
  EXPECT_EQ(Messages, (std::vector<std::string>{deeds, kDone}));
  EXPECT_EQ(Folder.Read("game/data/p"), "the payload");
  EXPECT_EQ(Shell.Opened.size(), 1U);
}

TEST_F(MainWindow, InstallsTheTickedModsInOrder) {
  WriteIniWithGame();
  frmMain& window = StartWithPack("EndScript=AddLine {<nl>data\\a.txt<nl>eins<nl>Ende<nl>}\r\n");
  window.Session().Pack.Mods[2].Selected = false;
  OnMessage = [&] {
    EXPECT_FALSE(window.Session().InstallRunning);
    window.cmdInstall_Click();  // the run is still on
  };
  window.cmdInstall_Click();
  // Each text goes in front of the line that it is added at, so the last stands last of them.
  EXPECT_EQ(Folder.Read("game/data/a.txt"), "eins\r\nEnde\r\nvon A\r\n");
  EXPECT_THAT(Messages, ElementsAre(kDone));
  EXPECT_TRUE(window.picInstallProgrress->isVisibleTo(window.panel->picPanel));
  Messages.clear();
  OnMessage = {};
  window.cmdInstall_Click();
  EXPECT_THAT(Messages, ElementsAre(kDone)) << "a second run works like the first";

  Messages.clear();
  window.picSAInstallDir->txtSAInstallDir->clear();
  window.cmdInstall_Click();
  EXPECT_THAT(Messages, IsEmpty()) << "without a directory there is none";
  EXPECT_TRUE(window.picSAInstallDir->isVisibleTo(window.panel->picPanel));
}

TEST_F(MainWindow, AsksBeforeItIsClosedDuringARun) {
  WriteIniWithGame("Position=1,2,600,500\r\n");
  frmMain& window = StartWithPack();
  const auto closeInARun = [&] {
    QTest::qWait(20);  // so that the run's first round of events comes at once
    QTimer::singleShot(0, &window, [&] { window.close(); });
    window.cmdInstall_Click();
  };
  closeInARun();
  EXPECT_THAT(Messages,
              ElementsAre("confirm: KELVO Beenden: "
                          "Die Installation ist noch nicht abgeschlossen.\r\n"
                          "Wenn Sie dieses Programm jetzt schließen ist Ihre GTA San Andreas "
                          "Installation möglicherweise zerstört.\r\n\r\nWirklich beenden?",
                          kDone));
  EXPECT_TRUE(window.isVisible());
  EXPECT_THAT(Folder.Read("game/data/a.txt"), HasSubstr("von B"));

  Answer = true;
  EXPECT_EXIT(closeInARun(), testing::ExitedWithCode(0), "");
  EXPECT_THAT(Ini(), HasSubstr("Position=1,2,600,500"));
  EXPECT_FALSE(Files.FindFirst(Folder.Dos("program\\inst_temp"), kFindFolders).empty());
}

TEST_F(MainWindow, RemovesItsTempFolderUnlessSomethingElseIsInIt) {
  Start();
  Folder.Write("program/inst_temp/rest.tmp", "x");
  Window->close();
  EXPECT_EQ(Folder.Read("program/inst_temp/rest.tmp"), "(missing)");
  EXPECT_TRUE(Files.FindFirst(Folder.Dos("program\\inst_temp"), kFindFolders).empty());
  EXPECT_THAT(Library.Calls.back(), "stop");

  Start();
  Folder.Write("program/inst_temp/rest.tmp", "x");
  Folder.Write("program/inst_temp/fremd/datei", "x");
  Window->close();
  EXPECT_THAT(Folder.List("program/inst_temp"), ElementsAre("fremd"));
}

TEST_F(MainWindow, SharesNeitherTempFolderNorGame) {
  Folder.Write("program/inst_temp/of-another", "x");
  Folder.Write("program/inst_temp2/rest.tmp", "left");
  Folder.Write("program/inst_temp2/.kelvo-lock", "KELVO 1\n");
  Folder.Write("program/inst_temp3/no-lock", "x");
  const FolderLock other = FolderLock::Take(Folder.At("program/inst_temp"), "KELVO");
  const FolderLock game = FolderLock::Take(Folder.At("game"), "kvpk");
  WriteIniWithGame();
  frmMain& window = StartWithPack();
  EXPECT_EQ(window.Session().TempDir, Folder.Dos("program\\inst_temp2"));
  EXPECT_EQ(Folder.Read("program/inst_temp2/rest.tmp"), "(missing)");
  window.cmdInstall_Click();
  EXPECT_THAT(Messages, ElementsAre(testing::MatchesRegex(
                            "stop: KELVO: In dieses Spielverzeichnis installiert gerade kvpk "
                            "\\(Prozess [0-9]+\\)\\.")));
  EXPECT_EQ(Folder.Read("game/data/a.txt"), "eins\r\n");
  window.close();
  EXPECT_EQ(Folder.Read("program/inst_temp/of-another"), "x");
  EXPECT_EQ(Folder.Read("program/inst_temp3/no-lock"), "x");
  EXPECT_FALSE(std::filesystem::exists(Folder.At("program/inst_temp2")));
}

TEST_F(MainWindow, GivesThePackPageItsStrip) {
  frmMain& window = StartWithPack("Title=Lang\r\nHTML=<b>Hallo</b>\r\nHTMLHeight=120\r\n");
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
  frmMain& window = StartWithPack();
  Folder.Write("kein.kvpk", "This is no archive at all.");
  window.OpenKELVOFile(Folder.Dos("kein.kvpk"));
  EXPECT_EQ(window.lblTitel->Caption(), "Kein Modpack: kein.kvpk");
  EXPECT_EQ(window.Session().Pack.Mods.size(), 4U);
  EXPECT_THAT(Messages, IsEmpty());
  EXPECT_FALSE(SplashIsThere());

  WriteArchive(Folder, "leer.kvpk", {{"bild.png", "x"}});
  // The message of a pack without an index is a place where events run: nothing else comes in.
  OnMessage = [&] {
    window.OpenKELVOFile(Folder.Dos("program\\p.kvpk"));
    window.picSAInstallDir->txtSAInstallDir->setText(QString::fromStdString(Folder.Dos("game")));
    window.cmdInstall_Click();
  };
  window.OpenKELVOFile(Folder.Dos("leer.kvpk"));
  EXPECT_THAT(Messages, ElementsAre(testing::StartsWith("plain: EncryptFile: Error: ")));
  EXPECT_EQ(window.lblTitel->Caption(), "");
  EXPECT_EQ(window.Session().Pack.ModTypes.size(), 1U);
}

TEST_F(MainWindow, ShowsThePackInOrderAndLeavesWhereItFails) {
  frmMain& window = StartWithPack("Title=Alt\r\nHTML=x\r\nHTMLHeight=50\r\n");
  std::string many = "[Info]\r\nTitle=Neu\r\n";
  for (int n = 1; n <= 30000; ++n) many += "[Mod" + std::to_string(n) + "]\r\nTypeID=1\r\n";
  WritePack(Folder, "neu.kvpk", many);
  std::set<std::string> seen;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &window, [&] {
    const std::size_t mods = window.Session().Pack.Mods.size();
    seen.insert(window.lblTitel->Caption().toStdString() + (SplashIsThere() ? ", splash" : "") +
                (mods == 4      ? ", old"
                 : mods < 30001 ? ", part"
                                : ", whole") +
                (window.html->isHidden() ? "" : ", page"));
  });
  watch.start(0);
  QTest::qWait(20);  // so that the opening's first round of events comes at once
  window.OpenKELVOFile(Folder.Dos("neu.kvpk"));
  QTest::qWait(1);
  EXPECT_THAT(seen, ElementsAre("Alt, old, page", "Alt, splash, old, page",
                                "Neu, splash, part, page", "Neu, whole"));

  WritePack(Folder, "halb.kvpk", "[Info]\r\nTitle=Halb\r\nHTML=y\r\nHTMLHeight=hoch\r\n");
  window.OpenKELVOFile(Folder.Dos("halb.kvpk"));
  EXPECT_EQ(window.lblTitel->Caption(), "Halb");
  EXPECT_TRUE(SplashIsThere());
  EXPECT_EQ(window.Session().Pack.HTML, "y");
  EXPECT_EQ(window.Session().Pack.Mods.size(), 30001U);
  EXPECT_TRUE(window.html->isHidden());
  EXPECT_THAT(Folder.List("program/inst_temp"), testing::Contains("modpack.ini"));
}

TEST_F(MainWindow, GrowsForATallPageOnly) {
  for (const auto& [height, box] : {std::pair("0", QRect(10, 20, 500, 300)),
                                    {"120", {10, 20, 500, 370}},
                                    {"300", {10, 20, 500, 571}},
                                    // It moves up for its buttons, and fills the desktop at most.
                                    {"450", {10, 19, 500, 781}},
                                    {"32000", {10, 0, 500, 800}}}) {
    WriteIni("Position=10,20,500,300\r\n");
    frmMain& window = StartWithPack(std::string("HTML=x\r\nHTMLHeight=") + height + "\r\n");
    EXPECT_EQ(window.geometry(), box) << height;
    window.resize(501, 100);
    EXPECT_EQ(window.size(), QSize(600, box.height() == 300 ? 250 : box.height()));
    EXPECT_EQ(window.cmdClose->x(), 576) << "whether the rest has its place or not";
  }
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
  window.SetStatus("nachher");
  EXPECT_THAT(Folder.Read("program/kelvo.log"),
              AllOf(testing::EndsWith("\tnachher\r\n"), Not(HasSubstr("vorher"))));
}

TEST_F(MainWindow, DisablesNineControlsUnderThePanel) {
  frmMain& window = StartWithPack();
  while (window.panel->tmrPanelUp().Interval != 0) window.panel->tmrPanelUp_Timer();
  const auto usable = [&] {
    std::vector<bool> states = {window.detail->cmdPicture->Enabled(),
                                window.detail->cmdDescription->Enabled()};
    for (const QWidget* const control : std::initializer_list<const QWidget*>{
             window.lists->picTypeList, window.lists->picModList, window.detail->picDescPic,
             window.cmdInstall, window.cmdOptions, window.cmdAbout, window.cmdExit}) {
      states.push_back(control->isEnabled());
    }
    return states;
  };
  EXPECT_THAT(usable(), testing::Each(false));
  EXPECT_TRUE(window.cmdHelp->isEnabled() && window.cmdClose->Enabled() &&
              window.cmdMinimize->Enabled() && window.cmdDockLink->Enabled());
  window.panel->EnableDown();
  window.panel->tmrPanelDown_Timer();
  EXPECT_THAT(usable(), testing::Each(true));
}

TEST_F(MainWindow, IsUsedByTheKeyboardAlone) {
  WriteIniWithGame();
  frmMain& window = StartWithPack();
  const auto key = [&](Qt::Key which, Qt::KeyboardModifiers keys = {}) {
    QTest::keyClick(window.windowHandle(), which, keys);
    while (window.panel->tmrPanelUp().Enabled) window.panel->tmrPanelUp_Timer();
    while (window.panel->tmrPanelDown().Enabled) window.panel->tmrPanelDown_Timer();
    return window.focusWidget();
  };
  QLineEdit* const box = window.picSAInstallDir->txtSAInstallDir;
  for (const Qt::Key press : {Qt::Key_Space, Qt::Key_Return}) {
    window.cmdOptions->setFocus();
    EXPECT_EQ(key(press), box);
    EXPECT_EQ(key(Qt::Key_Return), window.cmdOptions);
  }
  window.lists->picModList->setFocus();
  EXPECT_EQ(key(Qt::Key_O, Qt::AltModifier), box);
  for (int i = 0; i < 10; ++i) EXPECT_NE(key(Qt::Key_Tab), window.cmdHelp) << "under the panel";
  box->setText("?");
  key(Qt::Key_Escape);
  EXPECT_FALSE(window.panel->picPanel->isHidden());
  box->setText(QString::fromStdString(Folder.Dos("game")));
  EXPECT_EQ(key(Qt::Key_Escape), window.lists->picModList);
  key(Qt::Key_I, Qt::AltModifier);
  EXPECT_THAT(Messages, ElementsAre(kDone));
  key(Qt::Key_Udiaeresis, Qt::AltModifier);
  EXPECT_NE(window.findChild<frmAbout*>(), nullptr);
}

TEST_F(MainWindow, ShortensALongTitleBesideItsLogo) {
  frmMain& window = StartWithPack("Title=" + std::string(200, 'T') + "\r\n");
  window.resize(480, 600);
  EXPECT_EQ(window.lblTitel->geometry().right(), window.cmdClose->geometry().right());
  EXPECT_GE(window.lblTitel->x(), 24 + 300) << "where the picture ends";
  EXPECT_EQ(window.lblTitel->toolTip(), "<span>" + QString(200, 'T') + "</span>");
}

TEST_F(MainWindow, MaximisesByADoubleClickOnItsTitleStrip) {
  frmMain& window = StartWithPack("Title=Probe\r\n");
  for (const auto& [y, isMaximized] : {std::pair(52, false), {20, true}, {20, false}}) {
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, {400, y});
    EXPECT_EQ(window.isMaximized(), isMaximized) << y;
  }
  QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {},
                     window.lblTitel->geometry().center());
  EXPECT_TRUE(window.isMaximized()) << "on the title's text";
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
  const std::filesystem::path file = Folder.At("fallen gelassen.kvpk");
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.string()))});
  QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.lblTitel->Caption() == "Probe"; }));
}

TEST_F(MainWindow, OpensTheCommunityPage) {
  QTest::mouseClick(Start().lblDockLink, Qt::LeftButton);
  EXPECT_THAT(Shell.Opened, ElementsAre(testing::Pair(testing::StartsWith("http"), "")));
}

}  // namespace
