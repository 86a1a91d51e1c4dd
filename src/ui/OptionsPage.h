#pragma once

#include <functional>
#include <string>

#include "ui/SkinPage.h"

class FileSystem;
class InstallSession;
class SkinCheckBox;
class SkinTextBox;
class skinBtn;

/// The page of the sliding panel with the options: the game directory, the music, another pack.
class OptionsPage : public SkinPage {
  Q_OBJECT

 public:
  /// What the page asks of the rest of the window. Paths are DOS path text.
  struct Neighbours {
    std::function<void()> PlayClick;
    std::function<void()> PlayMOD;
    std::function<void()> StopMOD;
    std::function<void()> HidePanel;  ///< enables `tmrPanelDown`
    std::function<void(const std::string& path)> OpenKELVOFile;
    std::function<void(const QString& text, const QString& title)> MessageBox;
    /// Both give the path chosen, or nothing for a cancelled dialog. Unset: the system's dialogs.
    std::function<std::string(const QString& title, const std::string& initialDir)> ChooseFolder =
        {};
    std::function<std::string(const QString& title, const QString& filter)> ChooseFile = {};
  };

  /// `iniPath`: DOS path text of `kelvo.ini`.
  OptionsPage(QWidget* picPanel, InstallSession& session, const FileSystem& files,
              std::string iniPath, Neighbours neighbours);

  /// Puts the session's game directory into the text box.
  void ShowDirectory() const;
  /// Sets `chkMusik`; its click handler runs if that changes it.
  void SetMusic(int value) const;
  /// Opens the file as a pack if it is named as one and exists; otherwise nothing happens.
  void OpenIfPack(const std::string& path);
  /// As `cmdOK` if the directory is the game's; otherwise nothing happens.
  void CloseIfRight();

  void cmdOK_Click();
  void cmdSelectSAInstallDir_Click();
  void cmdOtherModPack_Click();
  void chkMusik_Click();
  void txtSAInstallDir_Change();

  SkinLabel* lblSAInstallDir;
  SkinTextBox* txtSAInstallDir;
  skinBtn* cmdSelectSAInstallDir;
  SkinLabel* lblMusik;
  SkinCheckBox* chkMusik;
  skinBtn* cmdOtherModPack;
  skinBtn* cmdOK;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void UseSystemDialogs();
  [[nodiscard]] bool TestDirectory(const std::string& folder) const;

  InstallSession& session_;
  const FileSystem& files_;
  std::string iniPath_;
  Neighbours neighbours_;
};
