#include "ui/SkinInputs.h"

#include <QPainter>
#include <algorithm>

#include "controls/Colours.h"
#include "controls/Fonts.h"
#include "controls/Painting.h"
#include "controls/SkinLooks.h"

namespace {

constexpr ColourNumber kInputBack = 14999516;
constexpr ColourNumber kHotBack = 16777215;
constexpr ColourNumber kFrame = 4336663;
constexpr ColourNumber kHotFrame = 3656959;
constexpr ColourNumber kPanel = 6050376;

}  // namespace

SkinTextBox::SkinTextBox(QWidget* parent) : QLineEdit(parent) {
  constexpr int kMargin = 2;
  setFrame(false);
  setAcceptDrops(false);  // a dropped file would come as a web address
  setTextMargins(kMargin, 0, kMargin, 0);
  setFont(Fonts::Tahoma());
  SkinLooks::SetTextColours(*this, kInputBack, Qt::black);
}

void SkinTextBox::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  QPainter painter(this);
  Painting::Frame(painter, rect(), 1, Colours::ToQColor(hasFocus() ? kHotFrame : kFrame));
}

SkinCheckBox::SkinCheckBox(QWidget* parent) : QCheckBox(parent) {
  setFont(Fonts::Tahoma());
  connect(this, &QCheckBox::toggled, this, &SkinCheckBox::Click);
}

void SkinCheckBox::paintEvent(QPaintEvent* /*event*/) {
  constexpr int kGap = 4;
  QPainter painter(this);
  Painting::Fill(painter, rect(), Colours::ToQColor(kPanel));

  const int side = std::min(width(), height());
  const QRect box(0, (height() - side) / 2, side, side);
  Painting::Fill(painter, box, Colours::ToQColor(underMouse() ? kHotBack : kInputBack));
  Painting::Frame(painter, box, 1, Colours::ToQColor(underMouse() ? kHotFrame : kFrame));
  if (isChecked()) {
    painter.setPen(Colours::ToQColor(kFrame));
    Fonts::DrawCaption(painter, box, Fonts::Marlett(side), "b");
  }

  const QRect caption = rect().adjusted(side + kGap, 0, 0, 0);
  painter.setPen(Qt::white);
  painter.setFont(font());
  painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
  if (hasFocus()) {
    const int textWidth = std::min(fontMetrics().horizontalAdvance(text()) + 2, caption.width());
    Painting::DrawFocusRect(painter, QRect(caption.left() - 2, 0, textWidth + 2, height()));
  }
}

bool SkinCheckBox::hitButton(const QPoint& place) const {
  return rect().contains(place);
}
