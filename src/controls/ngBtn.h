#pragma once

#include <QFont>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <array>
#include <cstdint>
#include <optional>

#include "controls/Accessibility.h"
#include "controls/Colours.h"

/// The states of an ngBtn: where the mouse is, and the position that the button is in.
enum class ngBtnState : std::uint8_t {
  kUpOn = 1,
  kOverOn = 2,
  kDownOn = 3,
  kUpOff = 4,
  kOverOff = 5,
  kDownOff = 6,
};

/// The parts that an ngBtn is painted from in its present state. Boxes are in pixels, from the
/// control's upper left corner.
struct ngBtnParts {
  QRect picture;  ///< at the picture's own size, which may be more than the control's
  QRect lblCaption;
  bool captionVisible = true;
  ColourNumber ForeColor = 0;
  QFont Font;
};

/// A button that shows one of six pictures, with a caption over it.
///
/// Each property P is read by P() and set by SetP(); what is set shows at once.
class ngBtn : public QWidget, public AccessibleButton {
  Q_OBJECT

 public:
  explicit ngBtn(QWidget* parent = nullptr);

  [[nodiscard]] QPixmap PicMouseUpOn() const { return Of(ngBtnState::kUpOn).picture; }
  [[nodiscard]] QPixmap PicMouseOverOn() const { return Of(ngBtnState::kOverOn).picture; }
  [[nodiscard]] QPixmap PicMouseDownOn() const { return Of(ngBtnState::kDownOn).picture; }
  [[nodiscard]] QPixmap PicMouseUpOff() const { return Of(ngBtnState::kUpOff).picture; }
  [[nodiscard]] QPixmap PicMouseOverOff() const { return Of(ngBtnState::kOverOff).picture; }
  [[nodiscard]] QPixmap PicMouseDownOff() const { return Of(ngBtnState::kDownOff).picture; }
  void SetPicMouseUpOn(const QPixmap& picture) { SetPicture(ngBtnState::kUpOn, picture); }
  void SetPicMouseOverOn(const QPixmap& picture) { SetPicture(ngBtnState::kOverOn, picture); }
  void SetPicMouseDownOn(const QPixmap& picture) { SetPicture(ngBtnState::kDownOn, picture); }
  void SetPicMouseUpOff(const QPixmap& picture) { SetPicture(ngBtnState::kUpOff, picture); }
  void SetPicMouseOverOff(const QPixmap& picture) { SetPicture(ngBtnState::kOverOff, picture); }
  void SetPicMouseDownOff(const QPixmap& picture) { SetPicture(ngBtnState::kDownOff, picture); }

  [[nodiscard]] QFont FontMouseUpOn() const { return Of(ngBtnState::kUpOn).font; }
  [[nodiscard]] QFont FontMouseOverOn() const { return Of(ngBtnState::kOverOn).font; }
  [[nodiscard]] QFont FontMouseDownOn() const { return Of(ngBtnState::kDownOn).font; }
  [[nodiscard]] QFont FontMouseUpOff() const { return Of(ngBtnState::kUpOff).font; }
  [[nodiscard]] QFont FontMouseOverOff() const { return Of(ngBtnState::kOverOff).font; }
  [[nodiscard]] QFont FontMouseDownOff() const { return Of(ngBtnState::kDownOff).font; }
  void SetFontMouseUpOn(const QFont& value) { SetStateFont(ngBtnState::kUpOn, value); }
  void SetFontMouseOverOn(const QFont& value) { SetStateFont(ngBtnState::kOverOn, value); }
  void SetFontMouseDownOn(const QFont& value) { SetStateFont(ngBtnState::kDownOn, value); }
  void SetFontMouseUpOff(const QFont& value) { SetStateFont(ngBtnState::kUpOff, value); }
  void SetFontMouseOverOff(const QFont& value) { SetStateFont(ngBtnState::kOverOff, value); }
  void SetFontMouseDownOff(const QFont& value) { SetStateFont(ngBtnState::kDownOff, value); }

  [[nodiscard]] ColourNumber ForeColorMouseUpOn() const { return Of(ngBtnState::kUpOn).colour; }
  [[nodiscard]] ColourNumber ForeColorMouseOverOn() const { return Of(ngBtnState::kOverOn).colour; }
  [[nodiscard]] ColourNumber ForeColorMouseDownOn() const { return Of(ngBtnState::kDownOn).colour; }
  [[nodiscard]] ColourNumber ForeColorMouseUpOff() const { return Of(ngBtnState::kUpOff).colour; }
  [[nodiscard]] ColourNumber ForeColorMouseOverOff() const {
    return Of(ngBtnState::kOverOff).colour;
  }
  [[nodiscard]] ColourNumber ForeColorMouseDownOff() const {
    return Of(ngBtnState::kDownOff).colour;
  }
  void SetForeColorMouseUpOn(ColourNumber value) { SetColour(ngBtnState::kUpOn, value); }
  void SetForeColorMouseOverOn(ColourNumber value) { SetColour(ngBtnState::kOverOn, value); }
  void SetForeColorMouseDownOn(ColourNumber value) { SetColour(ngBtnState::kDownOn, value); }
  void SetForeColorMouseUpOff(ColourNumber value) { SetColour(ngBtnState::kUpOff, value); }
  void SetForeColorMouseOverOff(ColourNumber value) { SetColour(ngBtnState::kOverOff, value); }
  void SetForeColorMouseDownOff(ColourNumber value) { SetColour(ngBtnState::kDownOff, value); }

  /// Whether the caption shows in the off and in the on states.
  [[nodiscard]] bool HasCaptionOff() const { return hasCaptionOff_; }
  [[nodiscard]] bool HasCaptionOn() const { return hasCaptionOn_; }
  void SetHasCaptionOff(bool value);
  void SetHasCaptionOn(bool value);
  /// Whether a click switches the button between off and on.
  [[nodiscard]] bool Extended() const { return extended_; }
  void SetExtended(bool value);
  [[nodiscard]] bool HasFocusRect() const { return hasFocusRect_; }
  void SetHasFocusRect(bool value);
  /// On or off. Setting it moves the button while the mouse isn't over it.
  [[nodiscard]] bool Value() const { return value_; }
  void SetValue(bool value);
  /// The object's name until it is set.
  [[nodiscard]] QString Caption() const { return caption_.value_or(objectName()); }
  void SetCaption(const QString& value);
  /// The mouse cursor of pointer number 99.
  [[nodiscard]] QPixmap MouseIcon() const { return mouseIcon_; }
  void SetMouseIcon(const QPixmap& value);
  /// Number of the mouse cursor over the control: 0 leaves it to the parent, 1 is the arrow, 15
  /// the four-way arrow, 99 `MouseIcon`.
  [[nodiscard]] std::int32_t MousePointer() const { return mousePointer_; }
  void SetMousePointer(std::int32_t value);
  /// From the control's edges to the focus rectangle, in pixels.
  [[nodiscard]] std::int32_t FocusDistance() const { return focusDistance_; }
  void SetFocusDistance(std::int32_t pixels);
  [[nodiscard]] bool Enabled() const { return isEnabled(); }
  void SetEnabled(bool value) { setEnabled(value); }

  [[nodiscard]] QWidget* hWnd() { return this; }
  /// Paints the surface anew, at once.
  void Refresh() { repaint(); }

  [[nodiscard]] ngBtnState State() const { return state_; }
  [[nodiscard]] ngBtnParts Parts() const;
  /// Whether `tmrOver` watches for the cursor to leave.
  [[nodiscard]] bool IsWatching() const { return tmrOver_.isActive(); }

  [[nodiscard]] QString AccessibleCaption() const override { return Caption(); }
  [[nodiscard]] bool IsPressed() const override;
  [[nodiscard]] bool IsUsable() const override { return isEnabled(); }
  [[nodiscard]] bool IsToggle() const override { return extended_; }
  [[nodiscard]] bool IsOn() const override { return value_; }
  void Press() override;

 signals:
  void Click();
  // Places are in pixels. `Button` is the button pressed or released, or the sum of those held.
  void MouseDown(int Button, int Shift, float X, float Y);
  void MouseMove(int Button, int Shift, float X, float Y);
  void MouseUp(int Button, int Shift, float X, float Y);
  void MouseEnter();
  void MouseLeave();
  /// The control is about to be painted at another number of device pixels to a pixel than before,
  /// as on another screen: the time to set pictures of that density.
  void DensityChanged(double ratio);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  struct StateSettings {
    QPixmap picture;
    QFont font;
    ColourNumber colour = 0;
  };

  [[nodiscard]] static std::size_t IndexOf(ngBtnState state);
  [[nodiscard]] const StateSettings& Of(ngBtnState state) const { return states_[IndexOf(state)]; }
  void SetPicture(ngBtnState state, const QPixmap& picture);
  void SetStateFont(ngBtnState state, const QFont& value);
  void SetColour(ngBtnState state, ColourNumber value);

  void Draw();
  void GoTo(ngBtnState state);
  void Toggle(bool isOver);
  void ApplyMousePointer();
  [[nodiscard]] bool IsUnderCursor() const;
  void tmrOver_Timer();

  std::array<StateSettings, 6> states_;
  ngBtnState state_ = ngBtnState::kUpOff;
  QTimer tmrOver_;

  bool hasCaptionOff_ = true;
  bool hasCaptionOn_ = true;
  bool extended_ = false;
  bool hasFocusRect_ = false;
  bool value_ = false;
  std::optional<QString> caption_;
  QPixmap mouseIcon_;
  std::int32_t mousePointer_ = 0;
  std::int32_t focusDistance_ = 2;

  double paintedRatio_ = 0;
  bool HasFocus_ = false;
  bool MouseIsOver_ = false;
  int LastButton_ = 0;
};
