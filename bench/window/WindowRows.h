#pragma once

#include <string>
#include <vector>

class QApplication;

/// What one row of the window's table came to.
struct WindowResult {
  std::string work;
  double value;  // a ratio, or milliseconds if the row says so
  double limit;
  std::string detail;  // what it was measured against, with the bare figures
};

/// The program's start up to its first painted window, against that of a bare window with the same
/// splash. Each is a process of its own: `program` is this benchmark, `kelvo` the built program.
WindowResult MeasureStart(const std::string& program, const std::string& kelvo,
                          const std::string& pack, int rounds);
/// The child of that row: a bare window and a splash, until they have been painted.
int RunBareWindow(QApplication& application);

/// An install of 1,000 script lines in the window, against the same run by the console's host with
/// its output dropped.
WindowResult MeasureScript(int rounds);

/// A repaint of both lists with 1,000 rows, in milliseconds.
WindowResult MeasureLists(int rounds);
