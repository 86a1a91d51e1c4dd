#include "ui/MessageBoxes.h"

#include <QAbstractButton>
#include <QMessageBox>

#include "ui/ConsentBox.h"
#include "ui/YesNo.h"

namespace {

/// Texts come from packs too, so they are shown as they stand.
QMessageBox::StandardButton Show(QWidget* owner, QMessageBox::Icon icon, const QString& text,
                                 const QString& title, QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton) {
  QMessageBox box(icon, title, text, buttons, owner);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(defaultButton);
  // The toolkit's own words are English where its translations aren't there.
  for (QAbstractButton* const button : box.buttons()) {
    const QMessageBox::StandardButton kind = box.standardButton(button);
    if (kind != QMessageBox::Ok) button->setText('&' + YesNo(kind == QMessageBox::Yes));
  }
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

MessageBoxes::Tell Teller(QMessageBox::Icon icon) {
  return [icon](QWidget* owner, const QString& text, const QString& title) {
    Show(owner, icon, text, title, QMessageBox::Ok, QMessageBox::Ok);
  };
}

}  // namespace

MessageBoxes MessageBoxes::Native() {
  return {Teller(QMessageBox::Information), Teller(QMessageBox::Critical),
          Teller(QMessageBox::NoIcon),
          [](QWidget* owner, const QString& text, const QString& title) {
            return Show(owner, QMessageBox::Warning, text, title,
                        QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
          },
          AskConsent};
}
