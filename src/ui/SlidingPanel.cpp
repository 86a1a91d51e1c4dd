#include "ui/SlidingPanel.h"

#include <QPalette>
#include <QWidget>

#include "controls/Colours.h"
#include "core/basDebugLog.h"
#include "ui/Layout.h"

namespace {

constexpr ColourNumber kBackColor = 10784648;
constexpr int kFirstInterval = 15;  // milliseconds
constexpr int kLastInterval = 29;   // reached: the slide is over
constexpr int kNotNow = 0;

}  // namespace

SlidingPanel::SlidingPanel(QWidget* form, std::function<void(bool Enable)> DisableForPanel)
    : QObject(form),
      picPanel(new QWidget(form)),
      DisableForPanel_(std::move(DisableForPanel)),
      upInterval_(kFirstInterval),
      downInterval_(kFirstInterval) {
  picPanel->setObjectName("picPanel");
  picPanel->setAutoFillBackground(true);
  QPalette colours = picPanel->palette();
  colours.setColor(QPalette::Window, Colours::ToQColor(kBackColor));
  picPanel->setPalette(colours);
  picPanel->resize(kWidth, 0);
  picPanel->hide();
  up_.setTimerType(Qt::PreciseTimer);
  down_.setTimerType(Qt::PreciseTimer);
  connect(&up_, &QTimer::timeout, this, &SlidingPanel::tmrPanelUp_Timer);
  connect(&down_, &QTimer::timeout, this, &SlidingPanel::tmrPanelDown_Timer);
}

void SlidingPanel::SetHeight(int height) const {
  picPanel->resize(kWidth, height);
}

void SlidingPanel::BringToFront(QWidget* page) {
  // The pages behind aren't seen, so the keyboard doesn't reach them either.
  for (QObject* const child : picPanel->children()) {
    auto* const other = qobject_cast<QWidget*>(child);
    if (other != nullptr) other->setVisible(other == page);
  }
  page->raise();
  front_ = page;
}

bool SlidingPanel::Shows(const QWidget* page) const {
  return front_ == page && !picPanel->isHidden() && !down_.isActive();
}

void SlidingPanel::Place(int W, int H) const {
  picPanel->move(Layout::Panel(W, H, picPanel->width(), !picPanel->isHidden()));
}

void SlidingPanel::EnableUp() {
  if (upInterval_ == kNotNow || up_.isActive()) return;
  former_ = picPanel->window()->focusWidget();
  up_.start(upInterval_);
}

void SlidingPanel::DisableUp() {
  up_.stop();
}

void SlidingPanel::EnableDown() {
  if (down_.isActive() || picPanel->isHidden()) return;
  // Turned round on the way up, the way down is the whole one, its last part below the place
  // where the panel waits.
  if (upInterval_ != kNotNow) downInterval_ = kFirstInterval;
  up_.stop();
  upInterval_ = kNotNow;
  down_.start(downInterval_);
}

bool SlidingPanel::HasFocus() const {
  return picPanel->isAncestorOf(picPanel->window()->focusWidget());
}

void SlidingPanel::TakeFocus() const {
  if (HasFocus()) return;
  QWidget* const target = front_ != nullptr ? front_.data() : picPanel;
  target->setFocus(Qt::OtherFocusReason);
}

void SlidingPanel::GiveFocusBack() const {
  if (!HasFocus()) return;
  // To the form itself, rather than to the next control in the tab order, if nobody had it.
  QWidget* const target = former_ != nullptr ? former_.data() : picPanel->parentWidget();
  target->setFocus(Qt::PopupFocusReason);  // what shows of it is what showed before
}

void SlidingPanel::PlaceInForm() const {
  const QWidget& form = *picPanel->parentWidget();
  Place(form.width(), form.height());
}

// The steps go from where the panel is: a change of the window's size during a slide has put it to
// its end, and the rest of the steps leads on from there. Where the slide ends it is put in place.
void SlidingPanel::tmrPanelUp_Timer() {
  Trapped("frmMain.tmrPanelUp_Timer", [&] {
    picPanel->show();
    picPanel->raise();
    picPanel->move(picPanel->x(), picPanel->y() - kLastInterval + upInterval_);
    ++upInterval_;
    up_.setInterval(upInterval_);
    if (upInterval_ != kLastInterval) return;
    downInterval_ = kFirstInterval;
    upInterval_ = kNotNow;
    up_.stop();
    PlaceInForm();
    TakeFocus();
    DisableForPanel_(false);
  });
}

void SlidingPanel::tmrPanelDown_Timer() {
  Trapped("frmMain.tmrPanelDown_Timer", [&] {
    DisableForPanel_(true);
    GiveFocusBack();
    picPanel->move(picPanel->x(), picPanel->y() + kLastInterval - downInterval_);
    ++downInterval_;
    down_.setInterval(downInterval_);
    if (downInterval_ != kLastInterval) return;
    upInterval_ = kFirstInterval;
    downInterval_ = kNotNow;
    down_.stop();
    picPanel->hide();
    PlaceInForm();
  });
}
