#include "ui/CatalogueLists.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/FocusFrame.h"
#include "controls/Input.h"
#include "controls/SkinScrollBar.h"
#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/window/hWndByMouse.h"
#include "ui/EngineText.h"

namespace {

using ListRow::kTicked;

constexpr int kRowHeight = ListRow::kHeight;
constexpr float kBesideTicks = 31;

// Windows' virtual key codes.
constexpr int kSpace = 32;
constexpr int kPageUp = 33;
constexpr int kPageDown = 34;
constexpr int kEnd = 35;
constexpr int kHome = 36;
constexpr int kUp = 38;
constexpr int kDown = 40;
constexpr int kRowsOfPageKey = 6;
constexpr int kShiftAlone = 1;

// Row numbers and their heights are 16-bit numbers: beyond 1092 rows a height overflows.
std::int16_t HeightOf(int rows) {
  return Text::CheckedInt16(static_cast<double>(rows) * kRowHeight, "height of the list's rows");
}

void TellFocusedRow(ListSurface* surface) {
  Trapped("frmMain.TellFocusedRow", [&] {
    if (surface->hasFocus()) ListAccessibility::TellFocus(surface);
  });
}

QString ModCountText(const udtModType& type) {
  return "Anzahl Mods: " + QString::number(type.ModCount);
}

}  // namespace

// One of the two lists, with what belongs to it.
struct CatalogueLists::List {
  ListSurface* surface;
  ListScrollBar* bar;
  std::int32_t* offset;
  std::int16_t* hoverRow;
  std::int16_t* lastHoverRow;
  void (CatalogueLists::*draw)();
  void (CatalogueLists::*scroll)();
  void (CatalogueLists::*mouseDown)(int, int, float, float);
  void (CatalogueLists::*click)();
  void (CatalogueLists::*scrollIntoView)(std::int16_t);

  [[nodiscard]] std::int16_t RowAt(float Y) const {
    return Text::CheckedInt16(std::floor((static_cast<double>(Y) - *offset) / kRowHeight) + 1,
                              "row under the mouse");
  }
};

// ------------------------------------------------------------------------ for assistive technology

// What both lists have in common there.
class CatalogueLists::Rows : public AccessibleRows {
 public:
  Rows(CatalogueLists& lists, const List& list) : lists_(lists), list_(list) {}

  [[nodiscard]] int Top(int row) const override { return (row - 1) * kRowHeight + *list_.offset; }
  [[nodiscard]] int Height() const override { return kRowHeight; }
  void Press(int row) override { Click(row, kBesideTicks); }
  void Toggle(int row) override { Click(row, 0); }

 protected:
  CatalogueLists& lists_;

 private:
  void Click(int row, float X) { lists_.ClickRow(list_, static_cast<std::int16_t>(row), X); }

  List list_;
};

class CatalogueLists::TypeRows : public CatalogueLists::Rows {
 public:
  using Rows::Rows;

  [[nodiscard]] int Count() const override { return lists_.LastType(); }
  [[nodiscard]] std::ptrdiff_t Item(int row) const override { return row; }
  [[nodiscard]] QString Name(int row) const override { return ToQString(Type(row).Name); }
  [[nodiscard]] QString Description(int row) const override { return ModCountText(Type(row)); }
  [[nodiscard]] Qt::CheckState Tick(int row) const override {
    if (Type(row).CheckState == ListRow::kNotTicked) return Qt::Unchecked;
    return Type(row).CheckState == kTicked ? Qt::Checked : Qt::PartiallyChecked;
  }
  [[nodiscard]] int Current() const override { return lists_.CurType; }
  [[nodiscard]] QString EmptyText() const override { return {}; }

 private:
  [[nodiscard]] const udtModType& Type(int row) const { return lists_.TypeAt(row); }
};

class CatalogueLists::ModRows : public CatalogueLists::Rows {
 public:
  using Rows::Rows;

  [[nodiscard]] int Count() const override { return lists_.RowsOfCurrentType(); }
  [[nodiscard]] std::ptrdiff_t Item(int row) const override {
    return &Mod(row) - lists_.catalogue_.Mods.data();
  }
  [[nodiscard]] QString Name(int row) const override { return ToQString(Mod(row).Name); }
  [[nodiscard]] QString Description(int row) const override {
    return ToQString(Mod(row).Description);
  }
  [[nodiscard]] Qt::CheckState Tick(int row) const override {
    return Mod(row).Selected ? Qt::Checked : Qt::Unchecked;
  }
  [[nodiscard]] int Current() const override { return lists_.CurModRow; }
  [[nodiscard]] QString EmptyText() const override { return ListRow::kEmptyText; }

 private:
  [[nodiscard]] const udtMod& Mod(int row) const {
    const std::vector<udtMod>& mods = lists_.catalogue_.Mods;
    const std::int16_t type = lists_.TypeAt(lists_.CurType).TypeID;
    const auto found = std::find_if(mods.begin() + 1, mods.end(), [&](const udtMod& mod) {
      return mod.TypeID == type && --row == 0;
    });
    return found == mods.end() ? mods.front() : *found;
  }
};

// ------------------------------------------------------------------------------------- building

CatalogueLists::CatalogueLists(QWidget* form, Catalogue& catalogue, Neighbours neighbours)
    : QObject(form), catalogue_(catalogue), neighbours_(std::move(neighbours)) {
  CreateControls(form);
  typeRows_ = std::make_unique<TypeRows>(*this, Types());
  modRows_ = std::make_unique<ModRows>(*this, Mods());
  picTypeList->SetRows(typeRows_.get());
  picModList->SetRows(modRows_.get());
  ConnectControls();
}

// Form and surfaces may outlive the lists.
CatalogueLists::~CatalogueLists() {
  for (const QPointer<ListSurface>& surface : surfaces_) {
    if (surface) surface->SetRows(nullptr);
  }
}

void CatalogueLists::CreateControls(QWidget* form) {
  const auto surface = [&](const char* name, const char* accessible, const QRect& place) {
    auto* const made = new ListSurface(form);
    made->setObjectName(name);
    made->setAccessibleName(accessible);
    made->setGeometry(place);
    made->SetBackColor(ListRow::kBack);
    new FocusFrame(made);
    return made;
  };
  const auto bar = [](const char* name, ListSurface* list, const QRect& place) {
    auto* const made = new ListScrollBar(list);
    made->setObjectName(name);
    made->setGeometry(place);
    return made;
  };
  picTypeList = surface("picTypeList", "Kategorien", {8, 56, 203, 210});
  picModList = surface("picModList", "Mods", {221, 56, 439, 210});
  scrModTypeList = bar("scrModTypeList", picTypeList, {180, 9, SkinScrollBar::kWidth, 63});
  scrModList = bar("scrModList", picModList, {417, 12, SkinScrollBar::kWidth, 63});
  surfaces_ = {picTypeList, picModList};
}

void CatalogueLists::ConnectControls() {
  using Me = CatalogueLists;
  connect(picTypeList, &ListSurface::MouseDown, this, &Me::picTypeList_MouseDown);
  connect(picTypeList, &ListSurface::MouseMove, this, &Me::picTypeList_MouseMove);
  connect(picTypeList, &ListSurface::Click, this, &Me::picTypeList_Click);
  connect(picTypeList, &ListSurface::KeyDown, this, [this](int KeyCode, int Shift) {
    if (!TakeEndRow(Types(), KeyCode, LastType())) picTypeList_KeyDown(KeyCode, Shift);
  });
  connect(picTypeList, &ListSurface::GotFocus, this, &Me::picTypeList_GotFocus);
  connect(picModList, &ListSurface::MouseDown, this, &Me::picModList_MouseDown);
  connect(picModList, &ListSurface::MouseMove, this, &Me::picModList_MouseMove);
  connect(picModList, &ListSurface::Click, this, &Me::picModList_Click);
  connect(picModList, &ListSurface::KeyDown, this, [this](int KeyCode, int Shift) {
    if (!TakeEndRow(Mods(), KeyCode, RowsOfCurrentType())) picModList_KeyDown(KeyCode, Shift);
  });
  connect(picModList, &ListSurface::GotFocus, this, &Me::picModList_GotFocus);
  // Later: the toolkit first tells of the list itself.
  for (ListSurface* const surface : {picTypeList, picModList}) {
    connect(
        surface, &ListSurface::GotFocus, surface, [surface] { TellFocusedRow(surface); },
        Qt::QueuedConnection);
  }
  connect(scrModTypeList, &ListScrollBar::Change, this, &Me::scrModTypeList_Change);
  connect(scrModTypeList, &ListScrollBar::Scroll, this, &Me::scrModTypeList_Scroll);
  connect(scrModTypeList, &ListScrollBar::GotFocus, this, &Me::scrModTypeList_GotFocus);
  connect(scrModTypeList, &ListScrollBar::MouseOver, this, [this] { LeaveForScrollBar(Types()); });
  connect(scrModList, &ListScrollBar::Change, this, &Me::scrModList_Change);
  connect(scrModList, &ListScrollBar::Scroll, this, &Me::scrModList_Scroll);
  connect(scrModList, &ListScrollBar::GotFocus, this, &Me::scrModList_GotFocus);
  connect(scrModList, &ListScrollBar::MouseOver, this, [this] { LeaveForScrollBar(Mods()); });
  connect(&clsListMouseWheel_, &clsSubClass::MessageCatched, this,
          &Me::clsListMouseWheel_MessageCatched);
}

CatalogueLists::List CatalogueLists::Types() {
  return {.surface = picTypeList,
          .bar = scrModTypeList,
          .offset = &TypeScroll,
          .hoverRow = &HoverType,
          .lastHoverRow = &LastHoverType_,
          .draw = &CatalogueLists::DrawTypeList,
          .scroll = &CatalogueLists::scrModTypeList_Scroll,
          .mouseDown = &CatalogueLists::picTypeList_MouseDown,
          .click = &CatalogueLists::picTypeList_Click,
          .scrollIntoView = &CatalogueLists::ScrollTypeIntoView};
}

CatalogueLists::List CatalogueLists::Mods() {
  return {.surface = picModList,
          .bar = scrModList,
          .offset = &ModScroll,
          .hoverRow = &HoverModRow,
          .lastHoverRow = &LastHoverMod_,
          .draw = &CatalogueLists::DrawModList,
          .scroll = &CatalogueLists::scrModList_Scroll,
          .mouseDown = &CatalogueLists::picModList_MouseDown,
          .click = &CatalogueLists::picModList_Click,
          .scrollIntoView = &CatalogueLists::ScrollModIntoView};
}

std::int16_t CatalogueLists::LastType() const {
  return static_cast<std::int16_t>(catalogue_.ModTypes.size() - 1);
}

udtModType& CatalogueLists::TypeAt(int index) const {
  if (index < 0 || index > LastType()) Fail("type ", index, " of ", LastType());
  return catalogue_.ModTypes[static_cast<std::size_t>(index)];
}

udtMod& CatalogueLists::ModAt(int index) const {
  const int last = static_cast<int>(catalogue_.Mods.size()) - 1;
  if (index < 0 || index > last) Fail("mod ", index, " of ", last);
  return catalogue_.Mods[static_cast<std::size_t>(index)];
}

std::int16_t CatalogueLists::RowsOfCurrentType() const {
  if (CurType <= 0 || CurType > LastType()) return 0;
  const udtModType& type = TypeAt(CurType);
  if (type.ModCount == 0) return 0;
  return static_cast<std::int16_t>(
      std::count_if(catalogue_.Mods.begin() + 1, catalogue_.Mods.end(),
                    [&](const udtMod& mod) { return mod.TypeID == type.TypeID; }));
}

// ------------------------------------------------------------------------------------- painting

void CatalogueLists::PrepareEmptyPicture() const {
  picModList->Clear();
  painter_.PaintEmptyText(*picModList);
  picModList->KeepAsBackground();
}

void CatalogueLists::DrawTypeList() {
  Trapped("frmMain.DrawTypeList", [&] {
    if (!ListsEnabled) return;
    PaintTypeList();
    ListAccessibility::TellChanges(picTypeList, typeChanges_);
  });
}

void CatalogueLists::DrawModList() {
  Trapped("frmMain.DrawModList", [&] {
    if (!ListsEnabled) return;
    PaintModList();
    ListAccessibility::TellChanges(picModList, modChanges_);
  });
}

void CatalogueLists::PaintTypeList() {
  picTypeList->Clear();
  int Overflow = 0;
  for (int i = 1; i <= LastType(); ++i) {
    const int top = HeightOf(i - 1) + TypeScroll;
    const udtModType& type = TypeAt(i);
    // Rows off the surface would be painted where nobody sees them.
    if (ListRow::Touches(*picTypeList, top)) {
      painter_.PaintRow(*picTypeList, top, ListRow::TypeColours().Of(i == CurType, i == HoverType),
                        {ToQString(type.Name), ModCountText(type), type.CheckState});
    }
    if (HeightOf(i) > picTypeList->height()) {
      if (Overflow == 0) scrModTypeList->show();
      Overflow = picTypeList->height() - HeightOf(i);
    }
  }
  ShowOverflow(Types(), Overflow);
}

void CatalogueLists::PaintModList() {
  CurMod = 0;
  picModList->Clear();
  const udtModType& type = TypeAt(CurType);
  if (CurType == 0 || type.ModCount == 0) return;
  int Overflow = 0;
  int Row = 0;
  for (int i = 1; i < static_cast<int>(catalogue_.Mods.size()); ++i) {
    const udtMod& mod = ModAt(i);
    if (mod.TypeID != type.TypeID) continue;
    ++Row;
    const int top = HeightOf(Row - 1) + ModScroll;
    if (ListRow::Touches(*picModList, top)) {
      painter_.PaintRow(*picModList, top,
                        ListRow::ModColours().Of(Row == CurModRow, Row == HoverModRow),
                        {ToQString(mod.Name), ToQString(mod.Description),
                         mod.Selected ? kTicked : ListRow::kNotTicked});
      if (Row == CurModRow) CurMod = static_cast<std::int16_t>(i);
    }
    if (HeightOf(Row) > picModList->height()) {
      if (Overflow == 0) scrModList->show();
      Overflow = picModList->height() - HeightOf(Row);
    }
  }
  ShowOverflow(Mods(), Overflow);
}

// A maximum that pulls the value along comes back here by way of `Change`, with the list painted
// anew; that ends because the maximum is the same then.
void CatalogueLists::ShowOverflow(const List& list, int Overflow) const {
  list.bar->SetMax(Overflow);
  list.bar->setVisible(Overflow != 0);
  list.surface->Refresh();
}

void CatalogueLists::RedrawLists(bool Enable) {
  Trapped("frmMain.RedrawLists", [&] {
    ListsEnabled = Enable;
    if (!Enable) return;
    DrawTypeList();
    DrawModList();
  });
}

// ------------------------------------------------------------------------------------- ticking

void CatalogueLists::SetTypeSelection(std::int16_t TypeID) {
  Trapped("frmMain.SetTypeSelection", [&] {
    int mods = 0;
    int ticked = 0;
    for (std::size_t i = 1; i < catalogue_.Mods.size(); ++i) {
      if (catalogue_.Mods[i].TypeID != TypeID) continue;
      ++mods;
      if (catalogue_.Mods[i].Selected) ++ticked;
    }
    std::int16_t state = ticked == mods ? kTicked : ListRow::kHalfTicked;
    if (ticked == 0) state = ListRow::kNotTicked;
    const auto type = std::find_if(catalogue_.ModTypes.begin() + 1, catalogue_.ModTypes.end(),
                                   [&](const udtModType& each) { return each.TypeID == TypeID; });
    if (type != catalogue_.ModTypes.end()) type->CheckState = state;
    DrawTypeList();
  });
}

// Without a selected type this ticks the mods of the placeholder's type, number 0. Kept as it is.
void CatalogueLists::picTypeList_Click() {
  Trapped("frmMain.picTypeList_Click", [&] {
    if (std::exchange(TickPending, false)) {
      udtModType& type = TypeAt(CurType);
      type.CheckState = type.CheckState == kTicked ? ListRow::kNotTicked : kTicked;
      for (std::size_t i = 1; i < catalogue_.Mods.size(); ++i) {
        udtMod& mod = catalogue_.Mods[i];
        if (mod.TypeID == type.TypeID) mod.Selected = type.CheckState > 0;
      }
      DrawTypeList();
      DrawModList();
    }
  });
}

void CatalogueLists::picModList_Click() {
  Trapped("frmMain.picModList_Click", [&] {
    const bool wasTick = std::exchange(TickPending, false);
    if (CurMod == 0) return;
    if (wasTick) {
      udtMod& mod = ModAt(CurMod);
      mod.Selected = !mod.Selected;
      DrawModList();
    }
    SetTypeSelection(ModAt(CurMod).TypeID);
  });
}

// --------------------------------------------------------------------------------------- mouse

// The mod list keeps its offset when the type changes, on purpose: its bar pulls it back if the new
// rows don't reach that far.
void CatalogueLists::picTypeList_MouseDown(int Button, int /*Shift*/, float X, float Y) {
  Trapped("frmMain.picTypeList_MouseDown", [&] {
    neighbours_.PlayClick();
    if (Button == Input::kLeftButton) CurType = Types().RowAt(Y);
    if (CurType > LastType()) CurType = 0;
    scrModList->hide();
    CurModRow = 0;
    CurMod = 0;
    if (TypeAt(CurType).ModCount < 1) {
      picModList->Clear();
      if (ListsEnabled) ListAccessibility::TellChanges(picModList, modChanges_);
    } else {
      DrawModList();
    }
    neighbours_.SetDescription(TypeAt(CurType).Description);
    DrawTypeList();
    if (X < ListRow::kTickColumn) TickPending = true;
    neighbours_.SetPicture(TypeAt(CurType).Picture);
  });
}

void CatalogueLists::picModList_MouseDown(int Button, int /*Shift*/, float X, float Y) {
  Trapped("frmMain.picModList_MouseDown", [&] {
    neighbours_.PlayClick();
    if (Button == Input::kLeftButton) CurModRow = Mods().RowAt(Y);
    if (Button != Input::kNoButton) DrawModList();
    if (X < ListRow::kTickColumn) TickPending = true;
    neighbours_.SetDescription(ModAt(CurMod).Readme);
    neighbours_.SetPicture(ModAt(CurMod).Picture);
  });
}

void CatalogueLists::picTypeList_MouseMove(int /*Button*/, int /*Shift*/, float /*X*/, float Y) {
  Trapped("frmMain.picTypeList_MouseMove", [&] { MoveOver(Types(), Y); });
}

void CatalogueLists::picModList_MouseMove(int /*Button*/, int /*Shift*/, float /*X*/, float Y) {
  Trapped("frmMain.picModList_MouseMove", [&] { MoveOver(Mods(), Y); });
}

// The surface reports the moment of leaving by itself, so nobody's clicks have to be captured.
void CatalogueLists::MoveOver(const List& list, float Y) {
  if (hWndByMouse() == list.surface) {
    *list.hoverRow = list.RowAt(Y);
    AimWheelHook(list.surface);
    list.surface->setFocus(Qt::MouseFocusReason);
  } else {
    *list.hoverRow = 0;
  }
  const bool isOther = *list.hoverRow != *list.lastHoverRow;
  *list.lastHoverRow = *list.hoverRow;
  if (isOther) (this->*list.draw)();
}

// Over the scroll bar the mouse isn't over the list, but its wheel still is the list's.
void CatalogueLists::LeaveForScrollBar(const List& list) {
  Trapped("frmMain.LeaveForScrollBar", [&] {
    MoveOver(list, 0);
    AimWheelHook(list.surface);
  });
}

void CatalogueLists::AimWheelHook(ListSurface* surface) {
  clsListMouseWheel_.StopSubClass();
  clsListMouseWheel_.StartSubclass(surface);
}

void CatalogueLists::StopWheelHook() {
  clsListMouseWheel_.StopSubClass();
}

void CatalogueLists::clsListMouseWheel_MessageCatched(QWidget* window, int delta,
                                                      bool& /*Cancel*/) {
  Trapped("frmMain.clsListMouseWheel_MessageCatched", [&] {
    const List list = window == picModList ? Mods() : Types();
    if (!list.surface->isEnabled()) return;
    const int step = delta >= 0 ? kRowHeight : -kRowHeight;
    if (!list.bar->TrySetValue(list.bar->Value() + step)) {
      list.bar->SetValue(delta >= 0 ? ListScrollBar::Min() : list.bar->Max());
    }
    (this->*list.draw)();
  });
}

// A click without mouse and keys, at the row's place, for which the row has to be in view.
void CatalogueLists::ClickRow(const List& list, std::int16_t Row, float X) {
  (this->*list.scrollIntoView)(Row);
  const int middle = (Row - 1) * kRowHeight + *list.offset + kRowHeight / 2;
  (this->*list.mouseDown)(Input::kLeftButton, 0, X, static_cast<float>(middle));
  (this->*list.click)();
}

// ------------------------------------------------------------------------------------ scrolling

void CatalogueLists::TakeOffset(const List& list) {
  *list.offset = list.bar->Value();
  (this->*list.draw)();
}

void CatalogueLists::scrModTypeList_Change() {
  Trapped("frmMain.scrModTypeList_Change", [&] { TakeOffset(Types()); });
}

void CatalogueLists::scrModTypeList_Scroll() {
  Trapped("frmMain.scrModTypeList_Scroll", [&] { TakeOffset(Types()); });
}

void CatalogueLists::scrModList_Change() {
  Trapped("frmMain.scrModList_Change", [&] { TakeOffset(Mods()); });
}

void CatalogueLists::scrModList_Scroll() {
  Trapped("frmMain.scrModList_Scroll", [&] { TakeOffset(Mods()); });
}

// A row that doesn't exist is out of the bar's range: that fails, and nothing moves.
void CatalogueLists::ScrollIntoView(const List& list, std::int16_t Row) {
  const int top = HeightOf(Row - 1) + *list.offset;
  if (top >= 0) {
    if (list.surface->height() >= top + kRowHeight) return;
    list.bar->SetValue(list.surface->height() - HeightOf(Row));
  } else {
    list.bar->SetValue(-HeightOf(Row - 1));
  }
  (this->*list.scroll)();
}

void CatalogueLists::ScrollTypeIntoView(std::int16_t Row) {
  Trapped("frmMain.ScrollTypeIntoView", [&] { ScrollIntoView(Types(), Row); });
}

void CatalogueLists::ScrollModIntoView(std::int16_t Row) {
  Trapped("frmMain.ScrollModIntoView", [&] { ScrollIntoView(Mods(), Row); });
}

// ------------------------------------------------------------------------------- keys and focus

// Home and End select what a press on the first and the last row would: the way into the mod list,
// whose other keys go on from a selection.
bool CatalogueLists::TakeEndRow(const List& list, int KeyCode, std::int16_t lastRow) {
  if (KeyCode != kHome && KeyCode != kEnd) return false;
  Trapped("frmMain.TakeEndRow", [&] {
    if (lastRow > 0) ClickRow(list, KeyCode == kHome ? std::int16_t{1} : lastRow, kBesideTicks);
  });
  return true;
}

void CatalogueLists::picTypeList_KeyDown(int KeyCode, int /*Shift*/) {
  Trapped("frmMain.picTypeList_KeyDown", [&] {
    switch (KeyCode) {
      case kUp:
        if (CurType > 1) --CurType;
        break;
      case kDown:
        CurType = static_cast<std::int16_t>(std::min(CurType + 1, int{LastType()}));
        break;
      case kPageUp:
      case kPageDown:
        RedrawLists(false);
        for (int i = 0; i < kRowsOfPageKey; ++i) {
          picTypeList_KeyDown(KeyCode == kPageUp ? kUp : kDown, 0);
        }
        RedrawLists(true);
        break;
      case kSpace:
        TickPending = true;
        picTypeList_Click();
        break;
      default:
        break;
    }
    ScrollTypeIntoView(CurType);
    DrawTypeList();
    picTypeList_MouseDown(Input::kNoButton, 0, kBesideTicks, 0);
  });
}

void CatalogueLists::picModList_KeyDown(int KeyCode, int Shift) {
  Trapped("frmMain.picModList_KeyDown", [&] {
    switch (KeyCode) {
      case kUp:
        if (CurMod != 0 && CurModRow > 1) --CurModRow;
        break;
      case kDown:
        if (CurMod != 0 && CurModRow < RowsOfCurrentType()) ++CurModRow;
        break;
      case kPageUp:
      case kPageDown:
        RedrawLists(false);
        // `CurMod` stands still until the lists are repainted; the steps go by row numbers, and the
        // last one clicks on the mod that was selected before. Kept as it is.
        for (int i = 1; i <= kRowsOfPageKey; ++i) {
          picModList_KeyDown(KeyCode == kPageUp ? kUp : kDown,
                             i < kRowsOfPageKey ? kShiftAlone : 0);
        }
        RedrawLists(true);
        break;
      case kSpace:
        TickPending = true;
        picModList_Click();
        break;
      default:
        break;
    }
    if (CurModRow < 1) return;
    ScrollModIntoView(CurModRow);
    DrawModList();
    if (Shift != kShiftAlone) picModList_MouseDown(Input::kNoButton, 0, kBesideTicks, 0);
  });
}

void CatalogueLists::picTypeList_GotFocus() {
  Trapped("frmMain.picTypeList_GotFocus", [&] { TickPending = false; });
}

void CatalogueLists::picModList_GotFocus() {
  Trapped("frmMain.picModList_GotFocus", [&] { TickPending = false; });
}

void CatalogueLists::scrModTypeList_GotFocus() const {
  Trapped("frmMain.scrModTypeList_GotFocus", [&] { picTypeList->setFocus(Qt::MouseFocusReason); });
}

void CatalogueLists::scrModList_GotFocus() const {
  Trapped("frmMain.scrModList_GotFocus", [&] { picModList->setFocus(Qt::MouseFocusReason); });
}
