#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdint>

/// The splash: two rows of tiles that drift to the right under a title that stands still.
class frmLoading : public QWidget {
  Q_OBJECT

 public:
  /// Paints its first frame.
  explicit frmLoading(QWidget* parent = nullptr);

  /// One step of the drift: one pixel, with a period of 40.
  void tmrTimer_Timer();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QPixmap picTitleBack_;
  QPixmap picCaption_;
  QPixmap surface_;  // what is painted stays
  QTimer tmrTimer_;
  std::int16_t n_ = 0;
};
