#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Hands the wheel messages of one widget to the program, ahead of the widget itself. Of all of
/// a window's messages it is the wheel alone that the program asks for, so no other is caught.
class clsSubClass : public QObject {
  Q_OBJECT

 public:
  explicit clsSubClass(QObject* parent = nullptr);
  ~clsSubClass() override;
  clsSubClass(const clsSubClass&) = delete;
  clsSubClass& operator=(const clsSubClass&) = delete;
  clsSubClass(clsSubClass&&) = delete;
  clsSubClass& operator=(clsSubClass&&) = delete;

  /// Puts the hook on `widget`. False if one is in place already, or there is no widget. The
  /// hook of a widget that is deleted is gone with it.
  bool StartSubclass(QWidget* widget);
  /// Takes the hook off. True when none remains.
  bool StopSubClass();
  [[nodiscard]] bool Hooked() const { return !window_.isNull(); }

 signals:
  /// One whole step of the wheel over `window`: `delta` is 120 upward (away from the user), -120
  /// downward. Turns smaller than a step, as touchpads send them, add up, also while the hook is
  /// taken off and put on the same widget again. `Cancel` is false; if the handler sets it, the
  /// wheel goes no further.
  void MessageCatched(QWidget* window, int delta, bool& Cancel);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QWidget> window_;
  QPointer<QWidget> turnedOver_;  // the widget that turned_ was for
  int turned_ = 0;                // of the step that isn't whole yet, in eighths of a degree
};
