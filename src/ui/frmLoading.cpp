#include "ui/frmLoading.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QScreen>

#include "controls/Skin.h"
#include "core/basDebugLog.h"

namespace {

constexpr QSize kSize(395, 75);
constexpr QPoint kCaptionPlace(12, 4);
constexpr int kTileStep = 40;
constexpr int kSecondRow = 47;
constexpr int kSecondRowShift = 7;
constexpr int kTick = 15;  // milliseconds

}  // namespace

frmLoading::frmLoading(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint),
      picTitleBack_(Skin::Picture("title_tile", devicePixelRatioF())),
      picCaption_(Skin::WithoutMagenta(Skin::Picture("splash_title", devicePixelRatioF()))),
      surface_(kSize * devicePixelRatioF()) {
  setObjectName("frmLoading");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFixedSize(kSize);
  if (const QScreen* const place = screen()) {
    move(place->geometry().center() - rect().center());
  }
  surface_.setDevicePixelRatio(devicePixelRatioF());
  connect(&tmrTimer_, &QTimer::timeout, this, &frmLoading::tmrTimer_Timer);
  tmrTimer_.start(kTick);
  tmrTimer_Timer();
}

void frmLoading::tmrTimer_Timer() {
  Trapped("frmLoading.tmrTimer_Timer", [&] {
    ++n_;
    QPainter painter(&surface_);
    for (int x = n_ - kTileStep; x <= width() + kTileStep; x += kTileStep) {
      painter.drawPixmap(x, 0, picTitleBack_);
      painter.drawPixmap(x - kSecondRowShift, kSecondRow, picTitleBack_);
    }
    painter.drawPixmap(kCaptionPlace, picCaption_);
    if (n_ == kTileStep) n_ = 0;
    update();
  });
}

void frmLoading::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).drawPixmap(0, 0, surface_);
}

void frmLoading::closeEvent(QCloseEvent* event) {
  // The program takes it away, not the user.
  if (event->spontaneous()) event->ignore();
}
