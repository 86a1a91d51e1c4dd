#pragma once

#include <QFont>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QWidget>
#include <variant>
#include <vector>

#include "controls/Colours.h"

class AccessibleRows;
class QPainter;

/// A surface that is painted on from outside, with boxes and texts, and tells of mouse and keys.
///
/// It keeps what was painted as a list of drawings, in pixels of its own scale, and draws them
/// whenever the screen asks, each time as fine as the screen is: nothing is lost when the window
/// was covered or goes to a screen of another scale. However often it is painted between two
/// frames, the screen sees the last state, once.
class ListSurface : public QWidget {
  Q_OBJECT

 public:
  explicit ListSurface(QWidget* parent = nullptr);

  /// Colour of everything that isn't painted on.
  void SetBackColor(ColourNumber colour);

  // Painting.
  /// Back to the persistent background.
  void Clear();
  void FillBox(const QRect& box, ColourNumber colour);
  /// Prints one line without a background, `place` being the upper left corner of its cell.
  /// Nothing wraps; a text that doesn't fit loses its end, and is a tooltip as well.
  void Print(const QPoint& place, const QString& text, const QFont& font, ColourNumber colour);
  /// Shows what was painted, with the next frame.
  void Refresh() { update(); }
  /// What is painted now is what `Clear` goes back to from here on.
  void KeepAsBackground();

  /// What assistive technology learns of the rows that are painted here; null for none. It has
  /// to outlive the surface's use of it.
  void SetRows(AccessibleRows* rows) { rows_ = rows; }
  [[nodiscard]] AccessibleRows* Rows() const { return rows_; }

 signals:
  // Button: 1 left, 2 right, 4 middle. Shift: 1 Shift, 2 Ctrl, 4 Alt, added. X and Y in pixels.
  // A press gives the surface the focus first, so `GotFocus` comes before its `MouseDown`.
  void MouseDown(int Button, int Shift, float X, float Y);
  /// The mouse has moved over the surface, or off it, and where it is now: the last one comes
  /// when it has left. `Button` adds all that are held.
  void MouseMove(int Button, int Shift, float X, float Y);
  /// A button was pressed and let go over the surface.
  void Click();
  /// Windows' virtual key code, 0 for a key without one here.
  void KeyDown(int KeyCode, int Shift);
  void GotFocus();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Box {
    QRect area;
    ColourNumber colour;
  };
  struct Line {
    QPoint place;
    QString text;
    QFont font;
    ColourNumber colour;
  };
  using Drawing = std::variant<Box, Line>;

  void Draw(QPainter& painter, const std::vector<Drawing>& drawings) const;
  [[nodiscard]] int RoomFrom(int x) const;
  [[nodiscard]] const Line* ShortenedAt(const QPoint& place) const;
  void TellWhereMouseIs();

  ColourNumber backColor_ = 0;
  std::vector<Drawing> background_;
  std::vector<Drawing> painted_;
  int pressed_ = 0;  // number of the button whose click may follow
  AccessibleRows* rows_ = nullptr;
};
