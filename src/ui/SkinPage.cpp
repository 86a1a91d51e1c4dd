#include "ui/SkinPage.h"

#include <QFontMetrics>
#include <QFontMetricsF>
#include <QPainter>

#include "controls/Colours.h"
#include "controls/Fonts.h"

namespace {

constexpr ColourNumber kField = 6050376;  // what the pages' pictures are where controls lie

}  // namespace

QFont SqueezedTo(int width, QFont font, const QString& text) {
  constexpr int kAsItIs = 100;
  constexpr int kNarrowest = 60;
  for (int stretch = kAsItIs; stretch >= kNarrowest; --stretch) {
    if (stretch != kAsItIs) font.setStretch(stretch);
    if (QFontMetricsF(font).horizontalAdvance(text) <= width) break;
  }
  return font;
}

SkinLabel::SkinLabel(QWidget* page, const char* name, const QRect& box, const QString& text)
    : QLabel(text, page) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setGeometry(box);
  setFont(Fonts::Tahoma());
  SetForeColor(Qt::white);
}

void SkinLabel::SetTooWide(TooWide rule) {
  tooWide_ = rule;
  update();
}

void SkinLabel::SetUnderline(bool underline) {
  QFont underlined = font();
  underlined.setUnderline(underline);
  setFont(underlined);
}

void SkinLabel::SetForeColor(const QColor& colour) {
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, colour);
  setPalette(colours);
}

void SkinLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QString shown = text();
  if (tooWide_ == TooWide::kShorten) {
    shown = QFontMetrics(font()).elidedText(shown, Qt::ElideMiddle, width());
  }
  painter.setFont(SqueezedTo(width(), font(), shown));
  painter.setPen(palette().color(QPalette::WindowText));
  constexpr int kSides = Qt::AlignLeft | Qt::AlignRight | Qt::AlignHCenter;
  const int side = static_cast<int>(alignment()) & kSides;
  Fonts::PrintInWeight(painter, [&] {
    painter.drawText(rect(), side | Qt::AlignVCenter | Qt::TextSingleLine, shown);
  });
}

SkinPage::SkinPage(QWidget* parent, const char* name, const QString& picture)
    : QWidget(parent), picture_(picture) {
  setObjectName(name);
  resize(Skin::SizeOf(picture));
  QPalette colours = palette();
  colours.setColor(QPalette::Window, Colours::ToQColor(kField));
  setPalette(colours);
}

void SkinPage::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawPixmap(0, 0, picture_.At(painter.device()->devicePixelRatioF()));
}
