#include "ui/cBrowseForFolder.h"

#include <QFileDialog>

#include "ui/NativePath.h"

std::string cBrowseForFolder::BrowseForFolder() const {
  QFileDialog dialog(hwndOwner, Title);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  const QString start = NativePath::OfFolder(files_, InitialDir);
  if (!start.isEmpty()) dialog.setDirectory(start);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return NativePath::ToDosText(files_, dialog.selectedFiles().first());
}
