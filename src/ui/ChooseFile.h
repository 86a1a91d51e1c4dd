#pragma once

#include <QString>
#include <string>

class FileSystem;
class QWidget;

/// The system's dialog that asks for an existing file to open. Set its properties, then run it.
class ChooseFile {
 public:
  explicit ChooseFile(const FileSystem& files) : files_(files) {}

  QWidget* hWnd = nullptr;
  QString Title;
  /// What is shown: a description with its patterns in brackets behind it.
  QString Filter;

  /// DOS path text of the file chosen; empty if the user cancelled. Fails on a file whose path
  /// can't be said in such text. Starts where the last dialog was left.
  [[nodiscard]] std::string Show() const;

 private:
  const FileSystem& files_;
};
