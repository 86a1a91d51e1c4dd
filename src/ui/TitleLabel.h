#pragma once

#include <QString>
#include <QWidget>

#include "controls/Colours.h"

/// One line of text on the form that takes the size of its text: the pack's title and its shadow.
/// A press on it is its own, it doesn't move the window; a double click is the window's.
class TitleLabel : public QWidget {
  Q_OBJECT

 public:
  TitleLabel(QWidget* parent, ColourNumber ForeColor);

  [[nodiscard]] QString Caption() const { return caption_; }
  void SetCaption(const QString& caption);
  /// A text that is wider than this many pixels loses its end, and is a tooltip as well.
  void SetRoom(int pixels);
  /// The text is another label's, which is read in this one's place.
  void HideFromReaders() { isHidden_ = true; }
  [[nodiscard]] bool IsHiddenFromReaders() const { return isHidden_; }

 signals:
  void Change();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void FitToRoom();

  QString caption_;
  QString shown_;
  bool isHidden_ = false;  // from screen readers
  int room_ = QWIDGETSIZE_MAX;
  ColourNumber foreColor_;
};
