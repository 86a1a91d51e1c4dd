#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "WindowRows.h"
#include "ui/frmLoading.h"

namespace {

/// Whether the middle of the screen shows anything but the empty root window. The rows' windows
/// open there.
bool SomethingIsPainted(const QPoint& place, const QRgb& colour) {
  const QImage pixel =
      QGuiApplication::primaryScreen()->grabWindow(0, place.x(), place.y(), 1, 1).toImage();
  return pixel.pixel(0, 0) == colour;
}

/// Milliseconds from the start of a process until the pixel at `place` has that colour.
double TimeUntilPainted(const QString& program, const QStringList& arguments, const QPoint& place,
                        const QRgb& colour) {
  QElapsedTimer clock;
  QProcess process;
  process.setStandardErrorFile(QProcess::nullDevice());
  clock.start();
  process.start(program, arguments);
  constexpr qint64 kPatience = 20000;
  while (!SomethingIsPainted(place, colour) && clock.elapsed() < kPatience) {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  const double passed = static_cast<double>(clock.nsecsElapsed()) / 1e6;
  process.kill();
  process.waitForFinished();
  // Until it is gone from the screen.
  while (SomethingIsPainted(place, colour)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return passed;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

constexpr QRgb kFormColour = 0xff9fa5b5;  // 159, 165, 181
constexpr QSize kForm(675, 591);

}  // namespace

WindowResult MeasureStart(const std::string& program, const std::string& kelvo,
                          const std::string& pack, int rounds) {
  // The lower left corner of a window in the middle of the screen: the form's bare colour in both.
  const QSize screen = QGuiApplication::primaryScreen()->size();
  const QPoint corner((screen.width() - kForm.width()) / 2 + 3,
                      (screen.height() + kForm.height()) / 2 - 4);
  std::vector<double> ratios;
  std::vector<double> ours;
  std::vector<double> bare;
  for (int round = 0; round <= rounds; ++round) {
    bare.push_back(
        TimeUntilPainted(QString::fromStdString(program), {"--bare"}, corner, kFormColour));
    ours.push_back(TimeUntilPainted(QString::fromStdString(kelvo), {QString::fromStdString(pack)},
                                    corner, kFormColour));
    if (round > 0) ratios.push_back(ours.back() / bare.back());  // the first one warms up
  }
  return {"start to the first painted window", Median(ratios), 1.5,
          "a bare window with the same splash: " + std::to_string(Median(ours)) + " / " +
              std::to_string(Median(bare)) + " ms"};
}

int RunBareWindow(QApplication& /*application*/) {
  frmLoading splash;
  splash.show();
  QApplication::processEvents();
  QWidget window(nullptr, Qt::FramelessWindowHint);
  window.resize(kForm);
  window.move((QGuiApplication::primaryScreen()->size().width() - kForm.width()) / 2,
              (QGuiApplication::primaryScreen()->size().height() - kForm.height()) / 2);
  QPalette colours = window.palette();
  colours.setColor(QPalette::Window, QColor::fromRgb(kFormColour));
  window.setPalette(colours);
  window.show();
  splash.close();
  return QApplication::exec();
}
