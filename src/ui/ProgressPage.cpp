#include "ui/ProgressPage.h"

#include "controls/tc_PBar.h"

namespace {

constexpr QRect kCaption(8, 6, 110, 13);
constexpr QRect kStatusCaption(8, 24, 35, 13);
constexpr QRect kStatus(106, 24, 215, 13);
constexpr QRect kModCaption(8, 44, 77, 13);
constexpr QRect kMod(106, 44, 215, 15);
constexpr QRect kTotalCaption(8, 65, 93, 13);
constexpr QRect kTotal(106, 65, 215, 15);

tc_PBar* MakeBar(QWidget* page, const char* name, const QRect& box, SkinLabel* caption) {
  auto* const bar = new tc_PBar(page);
  bar->setObjectName(name);
  bar->setGeometry(box);
  bar->setAccessibleName(caption->text());
  return bar;
}

}  // namespace

ProgressPage::ProgressPage(QWidget* picPanel)
    : SkinPage(picPanel, "picInstallProgrress", "panel_progress"),
      lblFortschrittCaption(
          new SkinLabel(this, "lblFortschrittCaption", kCaption, "Installationsfortschritt:")),
      lblFortschrittStatus(new SkinLabel(this, "lblFortschrittStatus", kStatusCaption, "Status:")),
      lblStatus(new SkinLabel(this, "lblStatus", kStatus, "#")),
      lblFortschrittMod(new SkinLabel(this, "lblFortschrittMod", kModCaption, "Fortschritt Mod:")),
      pBarFortschrittMod(MakeBar(this, "pBarFortschrittMod", kMod, lblFortschrittMod)),
      lblFortschritt(new SkinLabel(this, "lblFortschritt", kTotalCaption, "Fortschritt Gesamt:")),
      pBarFortschritt(MakeBar(this, "pBarFortschritt", kTotal, lblFortschritt)) {
  lblFortschrittCaption->SetUnderline(true);
  lblStatus->SetTooWide(SkinLabel::TooWide::kShorten);
}

void ProgressPage::SetStatus(const QString& text) const {
  lblStatus->setText(text);
}
