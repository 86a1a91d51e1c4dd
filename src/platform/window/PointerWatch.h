#pragma once

#include <QObject>

/// Whether the pointer is over one of the program's windows, as their Enter and Leave events
/// tell. For platforms that don't say where the pointer is once it has left.
class PointerWatch : public QObject {
 public:
  /// Watches the application from here on. The pointer counts as inside until it leaves.
  PointerWatch();

  [[nodiscard]] bool IsInside() const { return isInside_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isInside_ = true;
};
