#pragma once

#include <string>

class FileSystem;

/// Opens documents, programs and web addresses as the desktop does.
class ShellOpener {
 public:
  virtual ~ShellOpener() = default;
  /// Opens `file` (DOS path text, or an address that the desktop knows) with the working
  /// directory `folder` (DOS path text; empty means the process's own). Returns at once, doesn't
  /// wait for what was started, and reports nothing.
  virtual void Open(const std::string& file, const std::string& folder) = 0;
};

/// The desktop's own opener: `ShellExecute` on Windows, `xdg-open` elsewhere.
class DesktopOpener : public ShellOpener {
 public:
  explicit DesktopOpener(const FileSystem& files) : files_(files) {}
  void Open(const std::string& file, const std::string& folder) override;

 private:
  const FileSystem& files_;
};
