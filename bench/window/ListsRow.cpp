#include <QApplication>
#include <QElapsedTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <string>
#include <vector>

#include "WindowRows.h"
#include "ui/CatalogueLists.h"

WindowResult MeasureLists(int rounds) {
  constexpr int kRows = 1000;
  Catalogue catalogue;
  for (std::int16_t i = 1; i <= kRows; ++i) {
    udtModType type;
    type.TypeID = i;
    type.Name = "Typ " + std::to_string(i);
    type.ModCount = i == 1 ? kRows : 0;
    catalogue.ModTypes.push_back(type);
    udtMod mod;
    mod.TypeID = 1;
    mod.Name = "Mod " + std::to_string(i);
    mod.Description = "Beschreibung der Mod Nummer " + std::to_string(i);
    mod.Selected = true;
    catalogue.Mods.push_back(mod);
  }
  QWidget form;
  form.resize(1000, 800);
  CatalogueLists lists(&form, catalogue, {[] {}, [](const auto&) {}, [](const auto&) {}});
  lists.picTypeList->setGeometry(8, 56, 300, 700);
  lists.picModList->setGeometry(320, 56, 660, 700);
  lists.CurType = 1;
  lists.RedrawLists(true);
  form.show();
  while (!form.windowHandle()->isExposed()) QApplication::processEvents();
  std::vector<double> times;
  for (int round = 0; round <= rounds; ++round) {
    QElapsedTimer clock;
    clock.start();
    lists.RedrawLists(true);
    lists.picTypeList->repaint();
    lists.picModList->repaint();
    times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
  }
  std::sort(times.begin(), times.end());
  return {"a repaint of both lists with 1,000 rows, in ms", times[times.size() / 2], 8,
          "a frame's budget"};
}
