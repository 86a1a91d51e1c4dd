#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <QWindow>

/// Which of the program's widgets the pointer is over, as the windows' own events tell. For
/// platforms that tell no window where on the screen it stands, nor where the pointer is once it
/// has left them all.
class PointerWatch : public QObject {
 public:
  /// Watches the application from here on.
  PointerWatch();

  /// The widget under the pointer; null outside of all windows. Until the first event it is where
  /// the toolkit believes.
  [[nodiscard]] QWidget* Widget() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool hasHeard_ = false;
  QPointer<QWindow> window_;  // that the pointer is in
  QPoint place_;              // in it
};
