#pragma once

#include "ui/SkinPage.h"

class tc_PBar;

/// The page of the sliding panel that shows an install run: status line and two bars.
class ProgressPage : public SkinPage {
  Q_OBJECT

 public:
  explicit ProgressPage(QWidget* picPanel);

  /// Shows one line of status. One that is too long is shown without its middle, as what it
  /// begins and ends with tells most.
  void SetStatus(const QString& text) const;

  SkinLabel* lblFortschrittCaption;
  SkinLabel* lblFortschrittStatus;
  SkinLabel* lblStatus;
  SkinLabel* lblFortschrittMod;
  tc_PBar* pBarFortschrittMod;
  SkinLabel* lblFortschritt;
  tc_PBar* pBarFortschritt;
};
