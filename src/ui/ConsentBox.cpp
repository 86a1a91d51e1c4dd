#include "ui/ConsentBox.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/YesNo.h"

bool AskConsent(QWidget* owner, const QStringList& deeds, const QString& title) {
  constexpr int kMostLines = 12;
  constexpr int kWidth = 560;

  QDialog box(owner);
  box.setWindowTitle(title);
  auto* const intro = new QLabel("Dieses Modpack will auch außerhalb des Spiels etwas tun:", &box);
  auto* const list = new QPlainTextEdit(&box);
  list->setObjectName("deeds");
  list->setReadOnly(true);
  list->setTabChangesFocus(true);
  list->setLineWrapMode(QPlainTextEdit::NoWrap);
  list->setAccessibleName(intro->text());
  // The text of a pack, shown as it stands.
  list->setPlainText(deeds.join('\n'));
  const int lines = static_cast<int>(std::clamp<qsizetype>(deeds.size(), 2, kMostLines)) + 2;
  list->setFixedHeight(lines * list->fontMetrics().lineSpacing());
  auto* const question = new QLabel("Trotzdem installieren?", &box);

  auto* const buttons = new QDialogButtonBox(&box);
  QPushButton* const yes = buttons->addButton('&' + YesNo(true), QDialogButtonBox::YesRole);
  QPushButton* const no = buttons->addButton('&' + YesNo(false), QDialogButtonBox::RejectRole);
  yes->setAutoDefault(false);
  no->setDefault(true);
  QObject::connect(yes, &QPushButton::clicked, &box, &QDialog::accept);
  QObject::connect(no, &QPushButton::clicked, &box, &QDialog::reject);

  auto* const layout = new QVBoxLayout(&box);
  for (QWidget* const part : {static_cast<QWidget*>(intro), static_cast<QWidget*>(list),
                              static_cast<QWidget*>(question), static_cast<QWidget*>(buttons)}) {
    layout->addWidget(part);
  }
  box.resize(kWidth, box.sizeHint().height());
  no->setFocus();
  return box.exec() == QDialog::Accepted;
}
