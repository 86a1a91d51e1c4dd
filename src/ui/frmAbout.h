#pragma once

#include <string_view>

#include "ui/SkinPage.h"

class QTextEdit;
class ShellOpener;
class skinBtn;

/// The about window. It goes as soon as it loses the focus or is clicked, and deletes itself then.
class frmAbout : public SkinPage {
  Q_OBJECT

 public:
  frmAbout(QWidget* owner, ShellOpener& shell);

  SkinLabel* lblKvpk;
  QWidget* picTop;
  SkinLabel* lblProjektleitung;
  SkinLabel* lblProgrammierung;
  skinBtn* cmdCredit1;
  skinBtn* cmdCredit2;
  skinBtn* cmdCredit3;
  QWidget* picBotom;
  SkinLabel* lblRecht;
  QTextEdit* txtRecht;

  void cmdCredit1_Click();
  void cmdCredit2_Click();
  void cmdCredit3_Click();

 protected:
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Form_Load();
  void PlaceOverOwner();
  void Open(std::string_view address);

  ShellOpener& shell_;
};
