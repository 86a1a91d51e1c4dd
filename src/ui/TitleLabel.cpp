#include "ui/TitleLabel.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "controls/Fonts.h"
#include "ui/PlainToolTip.h"

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
  FitToRoom();
  emit Change();
}

void TitleLabel::SetRoom(int pixels) {
  if (std::exchange(room_, pixels) != pixels) FitToRoom();
}

void TitleLabel::FitToRoom() {
  const int whole = fontMetrics().horizontalAdvance(caption_);
  shown_ = whole <= room_ ? caption_ : fontMetrics().elidedText(caption_, Qt::ElideRight, room_);
  setToolTip(whole <= room_ ? QString() : PlainToolTip(caption_));
  // The text is aligned right, so it grows to the left.
  const int right = x() + width();
  resize(std::min(whole, room_), fontMetrics().height());
  move(right - width(), y());
  update();
}

void TitleLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(Colours::ToQColor(foreColor_));
  painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, shown_);
}

void TitleLabel::mousePressEvent(QMouseEvent* event) {
  event->accept();
}
