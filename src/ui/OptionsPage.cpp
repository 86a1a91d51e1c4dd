#include "ui/OptionsPage.h"

#include <QKeyEvent>
#include <utility>

#include "controls/Fonts.h"
#include "controls/SkinLooks.h"
#include "controls/skinBtn.h"
#include "core/basDebugLog.h"
#include "core/basIni.h"
#include "core/basMain.h"
#include "install/InstallSession.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "ui/ChooseFile.h"
#include "ui/EngineText.h"
#include "ui/SkinInputs.h"
#include "ui/YesNo.h"
#include "ui/cBrowseForFolder.h"

namespace {

constexpr QRect kDirectoryCaption(6, 6, 202, 13);
constexpr QRect kDirectory(6, 22, 288, 19);
constexpr QRect kSelectDirectory(299, 22, 19, 19);
constexpr QRect kMusicCaption(6, 46, 78, 13);
constexpr QRect kMusic(90, 46, 49, 13);
constexpr QRect kOtherPack(223, 45, 95, 15);
constexpr QRect kOk(140, 68, 45, 15);

constexpr std::string_view kSection = "Settings";

template <typename Control>
Control* MakeInput(QWidget* page, const char* name, const QRect& box) {
  auto* const input = new Control(page);
  input->setObjectName(name);
  input->setGeometry(box);
  return input;
}

skinBtn* MakeButton(QWidget* page, const char* name, const QRect& box, const QString& caption) {
  auto* const button = MakeInput<skinBtn>(page, name, box);
  constexpr int kBesideCaption = 8;  // the frame, the shadow and some air
  button->SetCaption(caption);
  SkinLooks::ApplyWindowLook(*button);
  button->SetDrawFocusRect(true);
  SkinLooks::SetFont(*button, SqueezedTo(box.width() - kBesideCaption, Fonts::Tahoma(), caption));
  return button;
}

}  // namespace

OptionsPage::OptionsPage(QWidget* picPanel, InstallSession& session, const FileSystem& files,
                         std::string iniPath, Neighbours neighbours)
    : SkinPage(picPanel, "picSAInstallDir", "panel_options"),
      lblSAInstallDir(new SkinLabel(this, "lblSAInstallDir", kDirectoryCaption,
                                    "GTA San Andreas Installationsverzeichnis:")),
      txtSAInstallDir(MakeInput<SkinTextBox>(this, "txtSAInstallDir", kDirectory)),
      cmdSelectSAInstallDir(MakeButton(this, "cmdSelectSAInstallDir", kSelectDirectory, "...")),
      lblMusik(new SkinLabel(this, "lblMusik", kMusicCaption, "Musik abspielen:")),
      chkMusik(MakeInput<SkinCheckBox>(this, "chkMusik", kMusic)),
      cmdOtherModPack(MakeButton(this, "cmdOtherModPack", kOtherPack, "Modpack öffnen...")),
      cmdOK(MakeButton(this, "cmdOK", kOk, "Ok")),
      session_(session),
      files_(files),
      iniPath_(std::move(iniPath)),
      neighbours_(std::move(neighbours)) {
  UseSystemDialogs();
  lblSAInstallDir->SetUnderline(true);
  lblMusik->SetUnderline(true);
  chkMusik->setText("Nein");
  setFocusProxy(txtSAInstallDir);
  txtSAInstallDir->setAccessibleName(lblSAInstallDir->text());
  cmdSelectSAInstallDir->setAccessibleName("Verzeichnis auswählen");
  chkMusik->setAccessibleName(lblMusik->text());

  connect(txtSAInstallDir, &QLineEdit::textChanged, this, &OptionsPage::txtSAInstallDir_Change);
  connect(cmdSelectSAInstallDir, &skinBtn::Click, this, &OptionsPage::cmdSelectSAInstallDir_Click);
  connect(chkMusik, &SkinCheckBox::Click, this, &OptionsPage::chkMusik_Click);
  connect(cmdOtherModPack, &skinBtn::Click, this, &OptionsPage::cmdOtherModPack_Click);
  connect(cmdOK, &skinBtn::Click, this, &OptionsPage::cmdOK_Click);
}

void OptionsPage::UseSystemDialogs() {
  if (!neighbours_.ChooseFolder) {
    neighbours_.ChooseFolder = [this](const QString& title, const std::string& initialDir) {
      cBrowseForFolder dialog(files_);
      dialog.UseNewUI = false;
      dialog.Title = title;
      dialog.hwndOwner = window();
      dialog.InitialDir = initialDir;
      return dialog.BrowseForFolder();
    };
  }
  if (!neighbours_.ChooseFile) {
    neighbours_.ChooseFile = [this](const QString& title, const QString& filter) {
      ChooseFile dialog(files_);
      dialog.hWnd = window();
      dialog.Title = title;
      dialog.Filter = filter;
      return dialog.Show();
    };
  }
}

void OptionsPage::ShowDirectory() const {
  txtSAInstallDir->setText(PathToQString(session_.SAInstallDir));
}

void OptionsPage::SetMusic(int value) const {
  chkMusik->SetValue(value);
}

bool OptionsPage::TestDirectory(const std::string& folder) const {
  if (basMain::IsGameDirectory(files_, folder)) return true;
  // The spelling is on purpose, as is that of the folder dialog's title: both texts stay.
  neighbours_.MessageBox("Dies ist nich das GTA San Andreas Installationsverzeichnis!",
                         "Falsche Auswahl!");
  return false;
}

void OptionsPage::CloseIfRight() {
  if (basMain::IsGameDirectory(files_, session_.SAInstallDir)) cmdOK_Click();
}

void OptionsPage::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter || !txtSAInstallDir->hasFocus()) return SkinPage::keyPressEvent(event);
  // A key that is still held from before, as on the button that led here, is none.
  if (!event->isAutoRepeat()) cmdOK_Click();
}

void OptionsPage::cmdOK_Click() {
  Trapped("frmMain.cmdOK_Click", [&] {
    neighbours_.PlayClick();
    if (!TestDirectory(session_.SAInstallDir)) return;
    neighbours_.HidePanel();
    basIni::INIWrite(files_, iniPath_, kSection, "SA_InstallDir", session_.SAInstallDir);
  });
}

void OptionsPage::cmdSelectSAInstallDir_Click() {
  Trapped("frmMain.cmdSelectSAInstallDir_Click", [&] {
    neighbours_.PlayClick();
    const std::string chosen =
        neighbours_.ChooseFolder("GTA San Andreas Installationsverzsichnis suchen",
                                 PathFromQString(txtSAInstallDir->text()));
    if (chosen.empty() || !TestDirectory(chosen)) return;
    txtSAInstallDir->setText(PathToQString(chosen));
  });
}

void OptionsPage::cmdOtherModPack_Click() {
  Trapped("frmMain.cmdOtherModPack_Click", [&] {
    neighbours_.PlayClick();
    OpenIfPack(neighbours_.ChooseFile("Modpack öffnen", "Moddock Modpack (*.kvpk)"));
  });
}

void OptionsPage::OpenIfPack(const std::string& path) {
  const bool isNamedSo = Text::LowerCase(path).ends_with(".kvpk");
  if (isNamedSo && !files_.FindFirst(path, kFindHidden).empty()) neighbours_.OpenKELVOFile(path);
}

void OptionsPage::chkMusik_Click() {
  Trapped("frmMain.chkMusik_Click", [&] {
    neighbours_.PlayClick();
    const int value = chkMusik->Value();
    basIni::INIWrite(files_, iniPath_, kSection, "PlayMusic", std::to_string(value));
    chkMusik->setText(YesNo(value != 0));
    if (value != 0) {
      neighbours_.PlayMOD();
    } else {
      neighbours_.StopMOD();
    }
  });
}

void OptionsPage::txtSAInstallDir_Change() {
  Trapped("frmMain.txtSAInstallDir_Change",
          [&] { session_.SAInstallDir = PathFromQString(txtSAInstallDir->text()); });
}
