#include <QApplication>

#include <gmock/gmock.h>

#include "controls/Fonts.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleMock(&argc, argv);
  const QApplication application(argc, argv);
  Fonts::Load();
  return RUN_ALL_TESTS();
}
