#pragma once

#include <QFont>
#include <QLabel>
#include <QString>
#include <QWidget>

#include "controls/Skin.h"

/// The font with its letters as narrow as it takes for the text to fit into `width` pixels, so that
/// a layout made for one font holds with another.
QFont SqueezedTo(int width, QFont font, const QString& text);

/// A line of text on a page: white in the skin's font, within its box whatever the font. The text
/// is kept and told to assistive technology as it is, however it is shown.
class SkinLabel : public QLabel {
  Q_OBJECT

 public:
  /// What happens to a text that is wider than its box.
  enum class TooWide {
    kSqueeze,  ///< the letters get narrower; for texts that are known
    kShorten,  ///< its middle is left out
  };

  SkinLabel(QWidget* page, const char* name, const QRect& box, const QString& text);

  void SetTooWide(TooWide rule);
  void SetUnderline(bool underline);
  void SetForeColor(const QColor& colour);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  TooWide tooWide_ = TooWide::kSqueeze;
};

/// A surface that a picture of the skin covers exactly.
class SkinPage : public QWidget {
  Q_OBJECT

 public:
  /// `picture`: its name in the skin. The page has its size, at 1x.
  SkinPage(QWidget* parent, const char* name, const QString& picture);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  SkinPicture picture_;
};
