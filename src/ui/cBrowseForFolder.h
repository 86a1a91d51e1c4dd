#pragma once

#include <QString>
#include <string>

class FileSystem;
class QWidget;

/// The system's dialog that asks for a folder. Set its properties, then run it.
class cBrowseForFolder {
 public:
  explicit cBrowseForFolder(const FileSystem& files) : files_(files) {}

  /// The dialog's other style, where there is more than one. Without effect here.
  bool UseNewUI = false;
  QString Title = "Choose Folder";
  QWidget* hwndOwner = nullptr;
  /// DOS path text of the folder that is selected at first; one that isn't there selects nothing.
  std::string InitialDir;

  /// DOS path text of the folder chosen; empty if the user cancelled. Fails on a folder whose
  /// path can't be said in such text.
  [[nodiscard]] std::string BrowseForFolder() const;

 private:
  const FileSystem& files_;
};
