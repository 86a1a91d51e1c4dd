#include "ui/ChooseFile.h"

#include <QFileDialog>

#include "ui/NativePath.h"

std::string ChooseFile::Show() const {
  QFileDialog dialog(hWnd, Title);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setNameFilter(Filter);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return NativePath::ToDosText(files_, dialog.selectedFiles().first());
}
