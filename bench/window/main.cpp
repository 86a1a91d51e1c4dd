// What the window costs: its start, its lists, and what it adds to an install run.
//   kelvo_window_bench KELVO PACK [ROUNDS]

#include <QApplication>
#include <QStringList>
#include <iomanip>
#include <iostream>

#include "WindowRows.h"
#include "controls/Fonts.h"

namespace {

bool Print(const WindowResult& row) {
  const bool isWithin = row.value <= row.limit;
  std::cout << std::fixed << std::setprecision(2) << std::left << std::setw(48) << row.work
            << std::right << std::setw(7) << row.value << "  limit " << row.limit << "  "
            << (isWithin ? "ok" : "OVER") << "   against " << row.detail << std::endl;
  return isWithin;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  Fonts::Load();
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.value(1) == "--bare") return RunBareWindow(application);
  if (arguments.size() < 3) {
    std::cerr << "Usage: kelvo_window_bench KELVO PACK [ROUNDS]\n";
    return 2;
  }
  constexpr int kRounds = 9;
  const int rounds = arguments.size() > 3 ? arguments[3].toInt() : kRounds;
  bool isWithin =
      Print(MeasureStart(QCoreApplication::applicationFilePath().toStdString(),
                         arguments[1].toStdString(), arguments[2].toStdString(), rounds));
  isWithin = Print(MeasureScript(rounds)) && isWithin;
  isWithin = Print(MeasureLists(rounds)) && isWithin;
  return isWithin ? 0 : 1;
}
