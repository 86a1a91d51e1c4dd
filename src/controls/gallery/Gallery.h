#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>

class CtrlScroller;
class ngBtn;
class skinBtn;
class tc_PBar;

/// A window with every control in every look, on the pictures of the skin: to press, hover, tab
/// and drag, and to look at as a picture.
class Gallery : public QWidget {
  Q_OBJECT

 public:
  explicit Gallery(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void AddSkinButtons();
  void AddPictureButtons();
  void AddBars();
  void AddScrollers();
  void AddPictures();
  void AddHeading(int x, int y, const QString& text);
  skinBtn* AddSkinButton(int x, int y, int width, const QString& caption);
  ngBtn* AddPictureButton(int x, int y, const QString& name, const QString& caption,
                          const QStringList& states);

  tc_PBar* liveBar_ = nullptr;
  CtrlScroller* scroller_ = nullptr;
  QPixmap tilePicture_;
  QPixmap title_;
  QPixmap logo_;
  QTimer tmrBar_;
  QTimer tmrTile_;
  int tile_ = 0;  // how far the tiles of the splash have drifted, in pixels
};
