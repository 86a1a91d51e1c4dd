#pragma once

#include <QFont>
#include <QRectF>
#include <QTimer>
#include <QWidget>
#include <array>
#include <cstdint>
#include <optional>

#include "controls/Accessibility.h"
#include "controls/Colours.h"

/// The parts that a skinBtn is painted from, bottom to top, as they stand on screen now. Boxes
/// are in twips, from the control's upper left corner; widths of borders are in pixels.
struct skinBtnParts {
  struct ShapeElement {
    QRectF Box;
    ColourNumber BackColor = 0;
    ColourNumber BorderColor = 0;
    int BorderWidth = 1;
    int BackStyle = 1;
    int BorderStyle = 1;
  };
  struct Label {
    QRectF Box;
    ColourNumber ForeColor = 0;
    QFont Font;
  };

  ShapeElement shadow;
  ShapeElement back;
  Label btn;   ///< the caption
  QSizeF MML;  ///< the area that receives the mouse
};

/// The program's flat button: a face with a frame, a hard shadow behind it and a centred caption,
/// in three looks. Pressing moves the face onto the shadow.
///
/// Lengths are in twips unless stated. Each property P is read by P() and set by SetP(). Setters
/// of the normal look show at once while that look is on; most others wait for their look to come.
class skinBtn : public QWidget, public AccessibleButton {
  Q_OBJECT

 public:
  /// Kinds of `Shape`, the form of face and shadow.
  enum ShapeKind : int {
    kRectangle,
    kSquare,
    kOval,
    kCircle,
    kRoundedRectangle,
    kRoundedSquare,
  };

  explicit skinBtn(QWidget* parent = nullptr);

  // Colours of each look.
  [[nodiscard]] ColourNumber BackColorNormal() const { return looks_[kNormal].backColor; }
  [[nodiscard]] ColourNumber BackColorMouseMove() const { return looks_[kOver].backColor; }
  [[nodiscard]] ColourNumber BackColorMouseDown() const { return looks_[kDown].backColor; }
  [[nodiscard]] ColourNumber FrameColorNormal() const { return looks_[kNormal].frameColor; }
  [[nodiscard]] ColourNumber FrameColorMouseMove() const { return looks_[kOver].frameColor; }
  [[nodiscard]] ColourNumber FrameColorMouseDown() const { return looks_[kDown].frameColor; }
  [[nodiscard]] ColourNumber ShadowColorNormal() const { return looks_[kNormal].shadowColor; }
  [[nodiscard]] ColourNumber ShadowColorMouseMove() const { return looks_[kOver].shadowColor; }
  [[nodiscard]] ColourNumber ShadowColorMouseDown() const { return looks_[kDown].shadowColor; }
  [[nodiscard]] ColourNumber ForeColorNormal() const { return looks_[kNormal].foreColor; }
  [[nodiscard]] ColourNumber ForeColorMouseMove() const { return looks_[kOver].foreColor; }
  [[nodiscard]] ColourNumber ForeColorMouseDown() const { return looks_[kDown].foreColor; }
  void SetBackColorNormal(ColourNumber value);
  void SetBackColorMouseMove(ColourNumber value) { looks_[kOver].backColor = value; }
  void SetBackColorMouseDown(ColourNumber value) { looks_[kDown].backColor = value; }
  void SetFrameColorNormal(ColourNumber value);
  void SetFrameColorMouseMove(ColourNumber value) { looks_[kOver].frameColor = value; }
  void SetFrameColorMouseDown(ColourNumber value) { looks_[kDown].frameColor = value; }
  /// Also takes the control to the normal look.
  void SetShadowColorNormal(ColourNumber value);
  void SetShadowColorMouseMove(ColourNumber value) { looks_[kOver].shadowColor = value; }
  void SetShadowColorMouseDown(ColourNumber value) { looks_[kDown].shadowColor = value; }
  void SetForeColorNormal(ColourNumber value);
  void SetForeColorMouseMove(ColourNumber value) { looks_[kOver].foreColor = value; }
  void SetForeColorMouseDown(ColourNumber value) { looks_[kDown].foreColor = value; }

  // Widths of the frame, in pixels.
  [[nodiscard]] std::int32_t FrameWidthNormal() const { return looks_[kNormal].frameWidth; }
  [[nodiscard]] std::int32_t FrameWidthMouseOver() const { return looks_[kOver].frameWidth; }
  [[nodiscard]] std::int32_t FrameWidthMouseDown() const { return looks_[kDown].frameWidth; }
  void SetFrameWidthNormal(std::int32_t pixels) { looks_[kNormal].frameWidth = pixels; }
  void SetFrameWidthMouseOver(std::int32_t pixels) { looks_[kOver].frameWidth = pixels; }
  void SetFrameWidthMouseDown(std::int32_t pixels) { looks_[kDown].frameWidth = pixels; }

  [[nodiscard]] QFont FontNormal() const { return looks_[kNormal].font; }
  [[nodiscard]] QFont FontMouseMove() const { return looks_[kOver].font; }
  [[nodiscard]] QFont FontMouseDown() const { return looks_[kDown].font; }
  void SetFontNormal(const QFont& value) { SetLookFont(kNormal, value); }
  void SetFontMouseMove(const QFont& value) { SetLookFont(kOver, value); }
  void SetFontMouseDown(const QFont& value) { SetLookFont(kDown, value); }

  // Fill of the shapes: 0 transparent, 1 opaque.
  [[nodiscard]] std::int32_t BackStyleNormal() const { return looks_[kNormal].backStyle; }
  [[nodiscard]] std::int32_t BackStyleMouseMove() const { return looks_[kOver].backStyle; }
  [[nodiscard]] std::int32_t BackStyleMouseDown() const { return looks_[kDown].backStyle; }
  void SetBackStyleNormal(std::int32_t value) { looks_[kNormal].backStyle = value; }
  void SetBackStyleMouseMove(std::int32_t value) { looks_[kOver].backStyle = value; }
  void SetBackStyleMouseDown(std::int32_t value) { looks_[kDown].backStyle = value; }

  // Frame of the shapes: 0 none, 1 solid.
  [[nodiscard]] std::int32_t BorderStyleNormal() const { return looks_[kNormal].borderStyle; }
  [[nodiscard]] std::int32_t BorderStyleMouseMove() const { return looks_[kOver].borderStyle; }
  [[nodiscard]] std::int32_t BorderStyleMouseDown() const { return looks_[kDown].borderStyle; }
  void SetBorderStyleNormal(std::int32_t value);
  void SetBorderStyleMouseMove(std::int32_t value) { looks_[kOver].borderStyle = value; }
  void SetBorderStyleMouseDown(std::int32_t value) { looks_[kDown].borderStyle = value; }

  /// A `ShapeKind`; any other number is drawn as a rectangle.
  [[nodiscard]] std::int32_t Shape() const { return shape_; }
  void SetShape(std::int32_t kind);
  /// The object's name until it is set.
  [[nodiscard]] QString Caption() const { return caption_.value_or(objectName()); }
  void SetCaption(const QString& value);
  /// In pixels, and no less than 0. On a small control it is held at a third of the shorter side.
  [[nodiscard]] std::int16_t ShadowDistance() const;
  void SetShadowDistance(std::int16_t pixels);
  [[nodiscard]] bool ShadowVisible() const { return shadowVisible_; }
  void SetShadowVisible(bool value);
  /// Of the surface behind the shapes: the parent's background until it is set.
  [[nodiscard]] ColourNumber BackColor() const;
  void SetBackColor(ColourNumber value);
  /// A disabled control shows its caption in grey, hears no mouse and no key, and passes the focus
  /// on. Mouse presses on it don't go through to the parent.
  [[nodiscard]] bool Enabled() const { return enabled_; }
  void SetEnabled(bool value);
  /// Whether Enter clicks, and the space key with a visible press. Without it the arrow keys move
  /// the focus, and the space key clicks.
  [[nodiscard]] bool RaiseClickByKeyEvent() const { return raiseClickByKeyEvent_; }
  void SetRaiseClickByKeyEvent(bool value) { raiseClickByKeyEvent_ = value; }
  /// Whether the control changes its look by itself.
  [[nodiscard]] bool AutoDrawButton() const { return autoDrawButton_; }
  void SetAutoDrawButton(bool value);
  [[nodiscard]] bool DrawFocusRect() const { return drawFocusRect_; }
  void SetDrawFocusRect(bool value);
  /// From the control's edges, in pixels.
  [[nodiscard]] std::int16_t FocusRectDistance() const { return focusRectDistance_; }
  void SetFocusRectDistance(std::int16_t pixels);
  /// Half the length of the visible press of a keyboard click, in milliseconds; 0 for none.
  [[nodiscard]] std::int16_t BlinkFrequency() const { return blinkFrequency_; }
  void SetBlinkFrequency(std::int16_t value) { blinkFrequency_ = value; }

  /// Whether the button is one of several pages' tabs, to screen readers: it is pressed while its
  /// page shows.
  void SetTab(bool value) { isTab_ = value; }

  // Kept, without effect on screen. Style and width are no less than 1.
  [[nodiscard]] ColourNumber FocusColor() const { return focusColor_; }
  [[nodiscard]] std::int32_t FocusBorderStyle() const { return focusBorderStyle_; }
  [[nodiscard]] std::int16_t FocusBorderWidth() const { return focusBorderWidth_; }
  void SetFocusColor(ColourNumber value) { focusColor_ = value; }
  void SetFocusBorderStyle(std::int32_t value);
  void SetFocusBorderWidth(std::int16_t value);

  // The control's place in its parent, in twips.
  [[nodiscard]] int Top() const;
  [[nodiscard]] int Left() const;
  [[nodiscard]] int Height() const;
  [[nodiscard]] int Width() const;
  void SetTop(int twips);
  void SetLeft(int twips);
  void SetHeight(int twips);
  void SetWidth(int twips);

  [[nodiscard]] QWidget* hWnd() { return this; }
  [[nodiscard]] bool Visible() const { return !isHidden(); }
  // NOLINTNEXTLINE(bugprone-virtual-near-miss): named like the other setters, and does the same.
  void SetVisible(bool value) { setVisible(value); }

  /// Lays the parts out in the control's size, which is no less than 120 twips each way.
  void Resize();

  // Each puts a look on. Without `force` nothing happens if it is on already.
  void Normal(bool force = false);
  void MouseMove(bool force = false);
  void MouseDown(bool force = false);

  /// Shows a press for `BlinkFrequency` * 2 milliseconds. The program stands still meanwhile.
  void BlinkButton();

  [[nodiscard]] const skinBtnParts& Parts() const { return parts_; }
  [[nodiscard]] bool LookNormal() const { return look_ == kNormal; }
  [[nodiscard]] bool LookOver() const { return look_ == kOver; }
  [[nodiscard]] bool LookDown() const { return look_ == kDown; }
  /// Whether `Timer1` watches for the cursor to leave.
  [[nodiscard]] bool IsWatching() const { return Timer1_.isActive(); }

  [[nodiscard]] QString AccessibleCaption() const override { return Caption(); }
  [[nodiscard]] bool IsPressed() const override { return LookDown(); }
  [[nodiscard]] bool IsUsable() const override { return enabled_ && isEnabled(); }
  [[nodiscard]] bool IsTab() const override { return isTab_; }
  void Press() override { emit Click(); }

 signals:
  void Click();
  // Places are in twips. `Button` is the button pressed or released, or the sum of those held.
  void MousMove(int Button, int Shift, float X, float Y);
  void MousDown(int Button, int Shift, float X, float Y);
  void MousUp(int Button, int Shift, float X, float Y);
  /// Only of the click by keyboard, with 13 and 0.
  void KeyDown(int KeyCode, int Shift);
  void KeyUp(int KeyCode, int Shift);
  void KeyPress(std::int16_t KeyAscii);
  void MouseEnter();
  void MouseLeave();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  enum Look : std::size_t { kNormal, kOver, kDown };

  struct LookSettings {
    ColourNumber backColor;
    ColourNumber frameColor;
    ColourNumber shadowColor;
    ColourNumber foreColor;
    std::int32_t frameWidth = 1;
    std::int32_t backStyle = 1;
    std::int32_t borderStyle = 1;
    QFont font = {};
  };

  struct MouseArguments {
    int Button;
    int Shift;
    float X;
    float Y;
  };

  void SetLookFont(Look look, const QFont& value);
  void ApplyLook(Look look, bool force);
  void RedrawLook();
  void CentreCaption();
  [[nodiscard]] bool MustDrawFocusRect() const;
  [[nodiscard]] QRectF FocusBox(qreal ratio) const;
  [[nodiscard]] bool IsUnderCursor() const;
  void Watch();

  void MML_MouseDown(const MouseArguments& mouse);
  void MML_MouseMove(const MouseArguments& mouse);
  void MML_MouseUp(const MouseArguments& mouse);
  void MML_Click();
  void Timer1_Timer();
  void cmdDummy_Click();
  bool SurfaceKeyDown(const QKeyEvent& key);
  bool SpaceDown();
  void SpaceUp();

  std::array<LookSettings, 3> looks_;
  std::optional<Look> look_;
  skinBtnParts parts_;
  QTimer Timer1_;

  std::int32_t shape_ = kRectangle;
  std::optional<QString> caption_;
  std::optional<ColourNumber> backColor_;
  std::int16_t shadowDistance_ = 2;
  std::int16_t focusRectDistance_ = 2;
  std::int16_t blinkFrequency_ = 75;
  std::int16_t focusBorderWidth_ = 1;
  std::int32_t focusBorderStyle_ = 1;
  ColourNumber focusColor_ = 16711680;
  bool shadowVisible_ = true;
  bool enabled_ = true;
  bool raiseClickByKeyEvent_ = true;
  bool autoDrawButton_ = true;
  bool drawFocusRect_ = false;
  bool isTab_ = false;

  bool HasFocus_ = false;
  bool KeyHeld_ = false;
  bool MouseIn_ = false;
  int LastButton_ = 0;
  Qt::MouseButtons pressedHere_;
};
