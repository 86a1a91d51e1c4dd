#pragma once

#include <QCheckBox>
#include <QLineEdit>

/// A line to type in, in the look of the skin.
class SkinTextBox : public QLineEdit {
  Q_OBJECT

 public:
  explicit SkinTextBox(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A check box in the look of the skin: its text in white on the surface behind it.
class SkinCheckBox : public QCheckBox {
  Q_OBJECT

 public:
  explicit SkinCheckBox(QWidget* parent);

  /// 0 off, 1 on.
  [[nodiscard]] int Value() const { return isChecked() ? 1 : 0; }
  /// Any number but 0 is on. Raises `Click` if that changes the value.
  void SetValue(int value) { setChecked(value != 0); }

 signals:
  /// The value has changed, by the user or by `SetValue`.
  void Click();

 protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] bool hitButton(const QPoint& place) const override;
};
