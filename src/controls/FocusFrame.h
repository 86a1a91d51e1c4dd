#pragma once

#include <QFocusFrame>

/// Shows with a dotted frame that a control has the focus, for controls that don't paint one
/// themselves. A focus that a press or the mere passing of the mouse has given doesn't show.
///
/// It lies on the control as its child, lets the mouse through and is nothing to assistive
/// technology.
class FocusFrame : public QFocusFrame {
  Q_OBJECT

 public:
  explicit FocusFrame(QWidget* control);

  /// Whether a focus that came for that reason is the keyboard's. `before`: whether the last one
  /// was; a window or a menu that was in front for a while changes nothing.
  static bool IsByKeyboard(Qt::FocusReason reason, bool before);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowOnControl();

  bool byKeyboard_ = false;
};
