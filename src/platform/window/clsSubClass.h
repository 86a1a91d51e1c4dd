#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Hands the wheel messages of one widget to the program, ahead of the widget itself.
class clsSubClass : public QObject {
  Q_OBJECT

 public:
  explicit clsSubClass(QObject* parent = nullptr);
  ~clsSubClass() override;

  /// Puts the hook on `widget`. False if one is in place already, or there is no widget.
  bool StartSubclass(QWidget* widget);
  /// Takes the hook off. True when none remains.
  bool StopSubClass();
  /// The hooked widget, or null.
  [[nodiscard]] QWidget* HookedWindow() const { return window_; }

 signals:
  /// One whole step of the wheel over `window`: `delta` is 120 upward, -120 downward. Turns
  /// smaller than a step, as touchpads send them, add up. The wheel goes no further if the
  /// handler sets `Cancel`.
  void MessageCatched(QWidget* window, int delta, bool& Cancel);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QWidget> window_;
  int turned_ = 0;  // of the step that isn't whole yet, in eighths of a degree
};
