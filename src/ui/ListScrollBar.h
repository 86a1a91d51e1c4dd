#pragma once

#include <QScrollBar>
#include <cstdint>

/// The upright scroll bar of a list. Its value is the list's offset in pixels: the minimum is 0,
/// the list's top, and the maximum 0 or negative, what the list overflows by.
///
/// Below it is the toolkit's bar, which counts the other way round, from 0 down to the overflow.
class ListScrollBar : public QScrollBar {
  Q_OBJECT

 public:
  /// Hidden at first. The list that scrolls is the parent, and is as high as the bar.
  explicit ListScrollBar(QWidget* list);

  /// How far the arrows go, and how far a click beside the handle.
  static constexpr int kSmallChange = 30;
  static constexpr int kLargeChange = 30;

  [[nodiscard]] static std::int32_t Min() { return 0; }
  [[nodiscard]] std::int32_t Max() const { return -maximum(); }
  /// Pulls the value along if it lies outside then. Fails above 0.
  void SetMax(std::int32_t max);
  /// While the handle is dragged, where it is.
  [[nodiscard]] std::int32_t Value() const { return -sliderPosition(); }
  /// False, and nothing else, for a value that lies outside of the range.
  bool TrySetValue(std::int32_t value);
  /// Fails for a value that lies outside of the range.
  void SetValue(std::int32_t value);

 signals:
  /// The value has changed, by whomever; of a drag it comes once, at the end.
  void Change();
  /// The user drags the handle, and the value with it.
  void Scroll();
  void GotFocus();
  /// The mouse has come over the bar.
  void MouseOver();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void PageBy(int action);
};
