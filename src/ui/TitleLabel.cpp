#include "ui/TitleLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "controls/Fonts.h"
#include "ui/PlainToolTip.h"

namespace {

// The caption alone is read: the tooltip has the same text.
class AccessibleTitle : public QAccessibleWidget {
 public:
  explicit AccessibleTitle(TitleLabel* label)
      : QAccessibleWidget(label, QAccessible::StaticText), label_(label) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name && !label_->IsHiddenFromReaders() ? label_->Caption()
                                                                       : QString();
  }
  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (label_->IsHiddenFromReaders()) state.invisible = true;
    return state;
  }

 private:
  TitleLabel* label_;  // outlives this
};

QAccessibleInterface* Make(const QString& /*className*/, QObject* object) {
  auto* const label = qobject_cast<TitleLabel*>(object);
  return label != nullptr ? new AccessibleTitle(label) : nullptr;
}

}  // namespace

TitleLabel::TitleLabel(QWidget* parent, ColourNumber ForeColor)
    : QWidget(parent), foreColor_(ForeColor) {
  QFont bold = Fonts::Tahoma();
  bold.setBold(true);
  setFont(bold);
  [[maybe_unused]] static const bool kIsInstalled = [] {
    QAccessible::installFactory(&Make);
    return true;
  }();
  resize(0, fontMetrics().height());
}

void TitleLabel::SetCaption(const QString& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  FitToRoom();
  QAccessibleEvent event(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
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
  Fonts::PrintInWeight(painter, [&] {
    painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, shown_);
  });
}

void TitleLabel::mousePressEvent(QMouseEvent* event) {
  event->accept();
}

// The toolkit would take it for one more press.
void TitleLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  event->ignore();
}
