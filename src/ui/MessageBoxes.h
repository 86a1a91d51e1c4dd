#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

/// The program's few message boxes. Tests put their own answers in.
struct MessageBoxes {
  using Tell = std::function<void(QWidget* owner, const QString& text, const QString& title)>;
  using Ask = std::function<bool(QWidget* owner, const QString& text, const QString& title)>;

  /// Information icon, OK.
  Tell Information;
  /// Stop icon, OK.
  Tell Stop;
  /// No icon, OK.
  Tell Plain;
  /// Warning icon, Yes and No with No as the default. True for Yes.
  Ask Confirm;
  /// Lists what a pack will do outside the game and asks whether to go on; No is the default.
  std::function<bool(QWidget* owner, const QStringList& deeds, const QString& title)> Consent;

  /// The toolkit's own boxes.
  static MessageBoxes Native();
  /// The title of a box that names none.
  static QString DefaultTitle() { return "KELVO"; }
};
