#pragma once

#include <QTextDocument>
#include <cstdint>
#include <string>

/// A page of a pack as a document that reaches nothing: not the disk, not the network, nothing of
/// the program's own. The pictures in it are those that it holds itself, as `data:` addresses;
/// where another one is named, its place stays empty.
///
/// All that the page names goes through `loadResource`, and the toolkit's own drawing of pictures,
/// which would look for a picture's name on the disk, is replaced.
class ClosedDocument : public QTextDocument {
  Q_OBJECT

 public:
  /// Reads a page. Fails on one that the toolkit would take very long to show (see `PageLimits`).
  ClosedDocument(const QString& html, QObject* parent);

  /// Pixels of all its pictures together.
  static constexpr std::int64_t kMostPixels = std::int64_t{8} * 1024 * 1024;

 protected:
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  QImage ReadPicture(const QUrl& address);

  std::int64_t pixelsLeft_ = kMostPixels;
};
