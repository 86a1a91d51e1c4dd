#pragma once

#include <QTextBrowser>
#include <cstdint>
#include <string>

class FileSystem;
class ShellOpener;

/// The strip that shows a pack's own page. Nothing that the page names is loaded (see
/// `ClosedDocument`), and no link changes the page: links to http and https open in the system's
/// browser, links within the page scroll, all others do nothing.
class HtmlStrip : public QTextBrowser {
  Q_OBJECT

 public:
  HtmlStrip(QWidget* parent, const FileSystem& files, ShellOpener& shell);

  /// Length of the largest page in bytes. An index can hold no longer one.
  static constexpr std::int64_t kLargestPage = std::int64_t{64} * 1024;

  /// Shows the page in a local file (DOS path text). It is Windows-1252 text, or UTF-8 if it says
  /// so. Has a trap: a page that can't be read or is too large or intricate leaves the strip empty.
  void Navigate(const std::string& path);

  /// Whether the user is to be asked nothing. The strip never asks, so it makes no difference.
  void SetSilent(bool /*value*/) {}

 protected:
  QVariant loadResource(int type, const QUrl& name) override;
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  void ShowPage(const QString& text);
  void Follow(const QUrl& link);

  const FileSystem& files_;
  ShellOpener& shell_;
  QTextDocument* page_ = nullptr;
};
