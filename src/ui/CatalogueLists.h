#pragma once

#include <QObject>
#include <QPointer>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "pack/Catalogue.h"
#include "platform/window/clsSubClass.h"
#include "ui/ListAccessibility.h"
#include "ui/ListRow.h"
#include "ui/ListScrollBar.h"
#include "ui/ListSurface.h"

/// The two lists of the main window: the mod types on the left, the mods of the selected type on
/// the right. They paint, hit-test and tick their rows themselves; the ticks are those of the
/// catalogue. Each procedure has a trap, by the name of the form that the lists belong to.
class CatalogueLists : public QObject {
  Q_OBJECT

 public:
  /// What the lists ask of the rest of the window.
  struct Neighbours {
    std::function<void()> PlayClick;
    std::function<void(const std::string& text)> SetDescription;
    std::function<void(const std::string& entry)> SetPicture;
  };

  /// Puts both surfaces on `form`, at their design places. The catalogue has to outlive the lists.
  CatalogueLists(QWidget* form, Catalogue& catalogue, Neighbours neighbours);
  ~CatalogueLists() override;
  CatalogueLists(const CatalogueLists&) = delete;
  CatalogueLists& operator=(const CatalogueLists&) = delete;
  CatalogueLists(CatalogueLists&&) = delete;
  CatalogueLists& operator=(CatalogueLists&&) = delete;

  ListSurface* picTypeList = nullptr;
  ListScrollBar* scrModTypeList = nullptr;
  ListSurface* picModList = nullptr;
  ListScrollBar* scrModList = nullptr;

  /// Where there are no mods, the mod list says so. Once, before anything is painted.
  void PrepareEmptyPicture() const;
  /// Repaints the type list; nothing while repainting is off.
  void DrawTypeList();
  /// Repaints the mod list and finds `CurMod` anew; nothing while repainting is off.
  void DrawModList();
  /// Turns repainting on or off, and repaints both lists if it is on.
  void RedrawLists(bool Enable);
  /// Finds the three-state tick of a type anew from those of its mods.
  void SetTypeSelection(std::int16_t TypeID);
  void ScrollTypeIntoView(std::int16_t Row);
  void ScrollModIntoView(std::int16_t Row);
  /// Takes the hook off the list that has it.
  void StopWheelHook();

  // Events. Button and Shift in the numbers of Windows, 0 for none; X and Y in pixels.
  void picTypeList_MouseDown(int Button, int Shift, float X, float Y);
  void picTypeList_MouseMove(int Button, int Shift, float X, float Y);
  void picTypeList_Click();
  void picTypeList_KeyDown(int KeyCode, int Shift);
  void picTypeList_GotFocus();
  void picModList_MouseDown(int Button, int Shift, float X, float Y);
  void picModList_MouseMove(int Button, int Shift, float X, float Y);
  void picModList_Click();
  void picModList_KeyDown(int KeyCode, int Shift);
  void picModList_GotFocus();
  void scrModTypeList_Change();
  void scrModTypeList_Scroll();
  void scrModTypeList_GotFocus() const;
  void scrModList_Change();
  void scrModList_Scroll();
  void scrModList_GotFocus() const;
  void clsListMouseWheel_MessageCatched(QWidget* window, int delta, bool& Cancel);

  // State. Rows count from 1, and 0 is none; offsets are in pixels, 0 or negative.
  std::int16_t CurType = 0;    // index in ModTypes of the selected type
  std::int16_t HoverType = 0;  // row under the mouse, which needn't exist
  std::int32_t TypeScroll = 0;
  std::int16_t CurModRow = 0;  // selected row among those of the current type
  std::int16_t CurMod = 0;     // its index in Mods, 0 if the last repaint didn't paint it
  std::int16_t HoverModRow = 0;
  std::int32_t ModScroll = 0;
  bool TickPending = false;   // the press that is under way was in the tick column
  bool ListsEnabled = false;  // repainting is on

 private:
  struct List;
  class Rows;
  class TypeRows;
  class ModRows;

  void CreateControls(QWidget* form);
  void ConnectControls();

  void PaintTypeList();
  void PaintModList();
  void ShowOverflow(const List& list, int Overflow) const;

  [[nodiscard]] List Types();
  [[nodiscard]] List Mods();
  [[nodiscard]] std::int16_t LastType() const;
  [[nodiscard]] udtModType& TypeAt(int index) const;
  [[nodiscard]] udtMod& ModAt(int index) const;
  [[nodiscard]] std::int16_t RowsOfCurrentType() const;

  void MoveOver(const List& list, float Y);
  void LeaveForScrollBar(const List& list);
  void AimWheelHook(ListSurface* surface);
  void TakeOffset(const List& list);
  void ScrollIntoView(const List& list, std::int16_t Row);
  bool TakeEndRow(const List& list, int KeyCode, std::int16_t lastRow);
  void ClickRow(const List& list, std::int16_t Row, float X);

  Catalogue& catalogue_;
  Neighbours neighbours_;
  ListRow::Painter painter_;
  clsSubClass clsListMouseWheel_;
  std::array<QPointer<ListSurface>, 2> surfaces_;
  std::unique_ptr<AccessibleRows> typeRows_;
  std::unique_ptr<AccessibleRows> modRows_;
  ListAccessibility::Changes typeChanges_;
  ListAccessibility::Changes modChanges_;
  std::int16_t LastHoverType_ = 0;  // at the last move of the mouse
  std::int16_t LastHoverMod_ = 0;
};
