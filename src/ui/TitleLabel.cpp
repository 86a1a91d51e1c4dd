#include "ui/TitleLabel.h"

#include <QMouseEvent>
#include <QPainter>

#include "controls/Fonts.h"

TitleLabel::TitleLabel(QWidget* parent, ColourNumber ForeColor)
    : QWidget(parent), foreColor_(ForeColor) {
  QFont bold = Fonts::Tahoma();
  bold.setBold(true);
  setFont(bold);
  resize(0, fontMetrics().height());
}

void TitleLabel::SetCaption(const QString& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  setAccessibleName(caption);
  // The text is aligned right, so it grows to the left.
  const int right = x() + width();
  resize(fontMetrics().horizontalAdvance(caption), fontMetrics().height());
  move(right - width(), y());
  update();
  emit Change();
}

void TitleLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(Colours::ToQColor(foreColor_));
  painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, caption_);
}

void TitleLabel::mousePressEvent(QMouseEvent* event) {
  event->accept();
}
