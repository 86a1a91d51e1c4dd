// gallery [PICTURE]: shows all controls in a window, or saves a picture of it.

#include <QApplication>
#include <QEventLoop>
#include <QPixmap>
#include <QTimer>

#include "controls/Fonts.h"
#include "controls/gallery/Gallery.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  Fonts::Load();
  Gallery gallery;
  gallery.show();
  if (argc < 2) return QApplication::exec();
  // The timers of the buttons find out that the cursor is elsewhere.
  QEventLoop wait;
  constexpr int kMilliseconds = 100;
  QTimer::singleShot(kMilliseconds, &wait, &QEventLoop::quit);
  wait.exec();
  return gallery.grab().save(argv[1]) ? 0 : 1;
}
