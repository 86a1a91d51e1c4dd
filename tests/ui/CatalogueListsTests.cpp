#include <QAccessible>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <QtTest/qtestspontaneevent.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/Hand.h"
#include "controls/RenderedAt.h"
#include "platform/Failure.h"
#include "ui/CatalogueLists.h"

namespace {

using testing::ElementsAre;

constexpr int kRow = 30;

// Counts how often a widget is painted on screen.
struct PaintCounter : QObject {
  explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
  int Take() {
    QApplication::processEvents();
    return std::exchange(count, 0);
  }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
  int count = 0;
};

// Both lists in a window, four rows high, and a hand over them.
class Lists : public testing::Test {
 protected:
  static constexpr int kHeight = 4 * kRow;

  void AddType(std::int16_t id, std::int16_t mods) {
    const std::string number = std::to_string(id);
    pack.ModTypes.push_back({id, "Typ" + number, "t" + number, "T" + number, mods, 1});
    for (int i = 1; i <= mods; ++i) {
      const std::string name = number + "." + std::to_string(i);
      pack.Mods.push_back({id, "Mod" + name, "\xDC " + name, "p" + name, "", true, "R" + name, ""});
    }
  }

  void Open() {
    hand.window.resize(640, 300);
    lists = std::make_unique<CatalogueLists>(
        &hand.window, pack,
        CatalogueLists::Neighbours{[this] { log += " click"; },
                                   [this](const std::string& text) { log += " text:" + text; },
                                   [this](const std::string& name) { log += " picture:" + name; }});
    lists->picTypeList->setGeometry(8, 56, 200, kHeight);
    lists->picModList->setGeometry(220, 56, 400, kHeight);
    lists->scrModTypeList->setGeometry(183, 0, 17, kHeight);
    lists->scrModList->setGeometry(383, 0, 17, kHeight);
    lists->PrepareEmptyPicture();
    lists->RedrawLists(true);
    hand.Open();
    lists->picTypeList_MouseDown(1, 0, 31, 1);
    log.clear();
  }

  void MoveTo(const QWidget* list, int row, int x) {
    hand.MoveTo(list->mapTo(list->window(), QPoint(x, (row - 1) * kRow + 15)));
  }
  void ClickType(int row, int x = 60) {
    MoveTo(lists->picTypeList, row, x);
    hand.Click();
  }
  void ClickMod(int row, int x = 60, Qt::MouseButton button = Qt::LeftButton) {
    MoveTo(lists->picModList, row, x);
    hand.Click(button);
  }
  static void Turn(QWidget* widget, int delta) {
    QWheelEvent event({5, 5}, widget->mapToGlobal(QPointF(5, 5)), {}, {0, delta}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // the toolkit hands on only such as are the user's
    qApp->notify(widget, &event);
  }

  struct KeyRow {
    Qt::Key key;
    int row;
    int scroll;
  };
  // Presses the keys. Each is to select that row, with one repaint, and to show what is its.
  void CheckKeys(ListSurface* list, const std::string& picture, const std::vector<KeyRow>& rows) {
    const bool isTypes = list == lists->picTypeList;
    PaintCounter paints(list);
    PaintCounter mods(lists->picModList);
    for (const auto& [key, row, scroll] : rows) {
      SCOPED_TRACE(key);
      paints.Take();
      mods.Take();
      log.clear();
      QTest::keyClick(list, key);
      EXPECT_EQ(isTypes ? lists->CurType : lists->CurModRow, row);
      EXPECT_EQ(isTypes ? lists->TypeScroll : lists->ModScroll, scroll);
      EXPECT_EQ(paints.Take(), 1);
      EXPECT_EQ(mods.Take(), 1);
      // Each of a page's steps shows its type; of those to a mod the last one does.
      const bool isPage = key == Qt::Key_PageDown || key == Qt::Key_PageUp;
      EXPECT_EQ(std::count(log.begin(), log.end(), ' '), !isPage ? 3 : isTypes ? 21 : 6);
      EXPECT_TRUE(log.ends_with(picture + std::to_string(row))) << log;
    }
  }

  std::string Log() { return std::exchange(log, ""); }
  [[nodiscard]] std::string Ticks() const {
    std::string ticks;
    for (std::size_t i = 1; i < pack.Mods.size(); ++i) ticks += pack.Mods[i].Selected ? 'x' : '.';
    return ticks;
  }
  static QColor Fill(QWidget* list, int row) {
    return RenderedAt(*list, 1).pixelColor(150, (row - 1) * kRow + 1);
  }
  static bool Shows(QWidget* list, int row, const QRect& part, const QColor& colour) {
    const QImage image = RenderedAt(*list, 2).copy(
        QRect(part.topLeft() * 2 + QPoint(0, (row - 1) * kRow * 2), part.size() * 2));
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y) == colour) return true;
      }
    }
    return false;
  }

  Hand hand;
  Catalogue pack;
  std::string log;
  std::unique_ptr<CatalogueLists> lists;
};

const QColor kPlain(179, 184, 197);
const QColor kSelected(72, 82, 92);
const QColor kDark(36, 41, 46);
const QRect kFirstLine(30, 2, 140, 12);
const QRect kTick(5, 5, 21, 21);
const QRect kEmptyText(15, 10, 200, 13);

}  // namespace

TEST_F(Lists, PaintsTicksInThreeStates) {
  for (std::int16_t id = 1; id <= 3; ++id) AddType(id, 4);
  Open();
  lists->CurType = 3;
  pack.ModTypes[1].CheckState = 2;
  pack.ModTypes[2].CheckState = 0;
  lists->DrawTypeList();
  EXPECT_TRUE(Shows(lists->picTypeList, 1, kTick, QColor(108, 112, 122))) << "half-tone";
  EXPECT_FALSE(Shows(lists->picTypeList, 1, kTick, kDark));
  EXPECT_FALSE(Shows(lists->picTypeList, 2, kTick, kDark));
  EXPECT_EQ(Fill(lists->picTypeList, 3), kSelected);
  EXPECT_TRUE(Shows(lists->picTypeList, 3, kTick, Qt::white));
}

TEST_F(Lists, ATypeFiltersTheMods) {
  AddType(7, 2);
  AddType(3, 1);
  AddType(5, 0);
  Open();
  ClickType(2);
  EXPECT_EQ(Log(), " click text:T3 picture:t3");
  ClickMod(1);
  EXPECT_EQ(lists->CurMod, 3) << "the row's index among all mods";
  EXPECT_EQ(Fill(lists->picModList, 2), kPlain) << "no second row";
  ClickType(1);
  EXPECT_EQ(lists->CurModRow, 0);
  Log();
  ClickMod(2);
  EXPECT_EQ(Log(), " click text:R7.2 picture:p7.2");

  ClickMod(4);
  EXPECT_EQ(lists->CurModRow, 4);
  EXPECT_EQ(lists->CurMod, 0);
  EXPECT_EQ(Log(), " click text: picture:");
  EXPECT_FALSE(Shows(lists->picModList, 1, kEmptyText, kSelected));
  ClickType(4);
  EXPECT_EQ(lists->CurType, 0);
  EXPECT_EQ(Log(), " click text: picture:");
  EXPECT_TRUE(Shows(lists->picModList, 1, kEmptyText, kSelected)) << "that there are no mods";
  ClickType(1);
  ClickType(3);
  EXPECT_TRUE(Shows(lists->picModList, 1, kEmptyText, kSelected));
}

TEST_F(Lists, TicksInThreeStates) {
  AddType(1, 3);
  AddType(2, 1);
  Open();
  const auto state = [&] { return Ticks() + std::to_string(pack.ModTypes[1].CheckState); };
  const auto mod = [&](int row, int x = 5, Qt::MouseButton button = Qt::LeftButton) {
    ClickMod(row, x, button);
    return state();
  };
  const auto type = [&] {
    ClickType(1, 5);
    return state();
  };
  EXPECT_EQ(mod(2, 29), "x.xx2");
  EXPECT_EQ(mod(3, 30), "x.xx2") << "beside the ticks";
  EXPECT_EQ(type(), "xxxx1") << "some become all";
  EXPECT_EQ(type(), "...x0");
  EXPECT_EQ(type(), "xxxx1");
  EXPECT_EQ(mod(1), ".xxx2");
  EXPECT_EQ(mod(2), "..xx2");
  EXPECT_EQ(mod(3), "...x0");
  EXPECT_EQ(mod(3, 5, Qt::RightButton), "..xx2");
  EXPECT_EQ(mod(1, 5, Qt::RightButton), "...x0") << "the selection stays on row 3";
  EXPECT_EQ(lists->CurModRow, 3);
  EXPECT_EQ(pack.ModTypes[2].CheckState, 1);

  lists->picModList_MouseDown(1, 0, 29.9F, 1);
  EXPECT_TRUE(lists->TickPending);
  lists->picModList_GotFocus();
  lists->picModList_Click();
  EXPECT_EQ(state(), "...x0") << "the focus came in between";

  MoveTo(lists->picModList, 1, 5);
  hand.Press(Qt::LeftButton);
  EXPECT_EQ(state(), "...x0") << "only when it is let go";
  MoveTo(lists->picTypeList, 1, 5);
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(state(), "...x0") << "let go elsewhere";
}

TEST_F(Lists, FocusAndHoverFollowTheMouse) {
  AddType(1, 9);
  AddType(2, 1);
  Open();
  PaintCounter types(lists->picTypeList);
  PaintCounter mods(lists->picModList);
  // The rows under the mouse, and how often the lists were painted.
  const auto moveTo = [&](QWidget* list, int row, int x) {
    MoveTo(list, row, x);
    return std::vector<int>{lists->HoverType, lists->HoverModRow, types.Take(), mods.Take()};
  };
  types.Take();
  mods.Take();
  EXPECT_THAT(moveTo(lists->picModList, 2, 50), ElementsAre(0, 2, 0, 1));
  EXPECT_TRUE(lists->picModList->hasFocus());
  EXPECT_THAT(moveTo(lists->picModList, 2, 90), ElementsAre(0, 2, 0, 0)) << "the same row";
  EXPECT_THAT(moveTo(lists->scrModList, 3, 5), ElementsAre(0, 0, 0, 1)) << "over the scroll bar";
  mods.Take();
  EXPECT_THAT(moveTo(lists->picModList, 3, 90), ElementsAre(0, 3, 0, 1));
  EXPECT_THAT(moveTo(lists->picTypeList, 4, 90), ElementsAre(4, 0, 1, 1)) << "beyond the types";
  EXPECT_TRUE(lists->picTypeList->hasFocus());
  const auto corner = [](QWidget* list) { return RenderedAt(*list, 1).pixelColor(0, 118); };
  EXPECT_EQ(corner(lists->picTypeList), kPlain) << "the mouse shows where it is";
  lists->picModList->setFocus(Qt::TabFocusReason);
  EXPECT_NE(corner(lists->picModList), kPlain);
  hand.MoveTo({2, 2});
  EXPECT_EQ(lists->HoverType, 0);

  lists->picModList->setEnabled(false);
  EXPECT_EQ(moveTo(lists->picModList, 2, 50).at(1), 0);
  lists->picModList->setEnabled(true);
  EXPECT_EQ(moveTo(lists->picModList, 2, 55).at(1), 2);
  lists->picModList->setEnabled(false);
  hand.MoveTo({2, 2});
  EXPECT_EQ(lists->HoverModRow, 2) << "nothing arrives at a disabled list";
  lists->picModList->setEnabled(true);
  EXPECT_EQ(lists->HoverModRow, 0);
}

TEST_F(Lists, HomeAndEndSelectWithoutASelection) {
  AddType(1, 9);
  AddType(2, 0);
  Open();
  const auto press = [&](ListSurface* list, Qt::Key key) {
    QTest::keyClick(list, key);
    return std::to_string(lists->CurModRow) + std::to_string(lists->ModScroll) + Log();
  };
  EXPECT_EQ(press(lists->picModList, Qt::Key_End), "9-150 click text:R1.9 picture:p1.9");
  EXPECT_EQ(press(lists->picModList, Qt::Key_Home), "10 click text:R1.1 picture:p1.1");
  EXPECT_EQ(press(lists->picTypeList, Qt::Key_End), "00 click text:T2 picture:t2");
  EXPECT_EQ(press(lists->picModList, Qt::Key_Home), "00") << "there is no row";
}

TEST_F(Lists, ShortenATextThatDoesNotFit) {
  AddType(1, 5);
  pack.Mods[1].Description = "<img src=x>" + std::string(80, 'W');
  Open();
  const auto tipAt = [&](const QPoint& place) {
    QHelpEvent event(QEvent::ToolTip, place, lists->picModList->mapToGlobal(place));
    QApplication::sendEvent(lists->picModList, &event);
    return QToolTip::text();
  };
  const auto hasInk = [&](int x, int width) {
    return Shows(lists->picModList, 1, {x, 16, width, 14}, kDark);
  };
  EXPECT_FALSE(hasInk(379, 21)) << "beside the scroll bar and under it";
  EXPECT_TRUE(hasInk(350, 29));
  EXPECT_EQ(tipAt({50, 5}), "") << "the first line fits";
  EXPECT_EQ(tipAt({50, 20}), "<span>&lt;img src=x&gt;" + QString(80, 'W') + "</span>");
}

TEST_F(Lists, TheWheelScrollsTheListUnderTheMouse) {
  AddType(1, 7);
  for (std::int16_t id = 2; id <= 6; ++id) AddType(id, 1);
  Open();
  const auto turn = [&](QWidget* over, int delta) {
    Turn(over, delta);
    return std::pair(lists->TypeScroll, lists->ModScroll);
  };
  MoveTo(lists->picModList, 1, 50);
  EXPECT_EQ(turn(lists->picModList, 120), std::pair(0, 0)) << "at the top already";
  EXPECT_EQ(turn(lists->picModList, -120), std::pair(0, -30));
  EXPECT_EQ(turn(lists->picModList, -240), std::pair(0, -60)) << "one step, however far";
  EXPECT_EQ(turn(lists->picTypeList, -120), std::pair(0, -60)) << "the hook is elsewhere";
  lists->scrModList->SetValue(-80);
  EXPECT_EQ(turn(lists->picModList, -120), std::pair(0, -90)) << "to the end";
  MoveTo(lists->scrModTypeList, 2, 5);
  EXPECT_EQ(turn(lists->scrModTypeList, -120), std::pair(-30, -90));
  lists->picTypeList->setEnabled(false);
  EXPECT_EQ(turn(lists->picTypeList, -120), std::pair(-30, -90));
  lists->picTypeList->setEnabled(true);
  lists->StopWheelHook();
  EXPECT_EQ(turn(lists->picTypeList, -120), std::pair(-30, -90));
}

TEST_F(Lists, KeysMoveTheType) {
  for (std::int16_t id = 1; id <= 9; ++id) AddType(id, id == 9 ? 0 : 2);
  Open();
  const std::vector<KeyRow> rows = {
      {Qt::Key_Up, 1, 0},    {Qt::Key_Down, 2, 0},        {Qt::Key_PageDown, 8, -120},
      {Qt::Key_F5, 8, -120}, {Qt::Key_PageDown, 9, -150}, {Qt::Key_Down, 9, -150},
      {Qt::Key_Up, 8, -150}, {Qt::Key_PageUp, 2, -30},    {Qt::Key_PageUp, 1, 0}};
  CheckKeys(lists->picTypeList, "picture:t", rows);
  QTest::keyClick(lists->picTypeList, Qt::Key_Space);
  EXPECT_EQ(Ticks().substr(0, 4), "..xx");
  lists->CurType = 0;
  QTest::keyClick(lists->picTypeList, Qt::Key_Up);
  EXPECT_EQ(lists->CurType, 0);
}

TEST_F(Lists, KeysMoveTheMod) {
  AddType(2, 1);
  AddType(1, 10);
  Open();
  ClickType(2);
  QTest::keyClick(lists->picModList, Qt::Key_Down);
  EXPECT_EQ(lists->CurModRow, 0) << "keys don't begin a selection";
  ClickMod(1);
  const std::vector<KeyRow> rows = {{Qt::Key_Up, 1, 0},          {Qt::Key_Down, 2, 0},
                                    {Qt::Key_PageDown, 8, -120}, {Qt::Key_PageDown, 10, -180},
                                    {Qt::Key_Down, 10, -180},    {Qt::Key_PageUp, 4, -90},
                                    {Qt::Key_A, 4, -90},         {Qt::Key_PageUp, 1, 0}};
  CheckKeys(lists->picModList, "picture:p1.", rows);
  Log();
  QTest::keyClick(lists->picModList, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(lists->CurModRow, 2);
  EXPECT_EQ(Log(), "") << "Shift alone leaves the detail view";
  QTest::keyClick(lists->picModList, Qt::Key_Down, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_TRUE(log.ends_with("picture:p1.3")) << log;
  QTest::keyClick(lists->picModList, Qt::Key_Space);
  EXPECT_EQ(Ticks(), "xxx.xxxxxxx");
  EXPECT_EQ(pack.ModTypes[2].CheckState, 2);

  lists->scrModList->SetValue(-150);
  EXPECT_EQ(lists->CurMod, 0) << "scrolled off the surface";
  QTest::keyClick(lists->picModList, Qt::Key_Down);
  EXPECT_EQ(lists->CurModRow, 3) << "only comes back into view";
  EXPECT_EQ(lists->CurMod, 4);
  EXPECT_EQ(lists->ModScroll, -60);
}

TEST_F(Lists, TheScrollBarAppearsWithTheFirstPixelTooMany) {
  AddType(1, 4);
  AddType(2, 8);
  Open();
  EXPECT_TRUE(lists->scrModList->isHidden());
  lists->picModList->resize(400, kHeight - 1);
  lists->DrawModList();
  EXPECT_FALSE(lists->scrModList->isHidden());
  EXPECT_EQ(lists->scrModList->Max(), -1);
  lists->picModList->resize(400, kHeight);

  ClickType(2);
  lists->scrModList->SetValue(-100);
  ClickType(3);
  EXPECT_EQ(lists->ModScroll, -100) << "stays while nothing is painted";
  ClickType(1);
  EXPECT_EQ(lists->ModScroll, 0) << "the new maximum pulls it back";
  EXPECT_TRUE(Shows(lists->picModList, 4, kFirstLine, kDark)) << "and the list is painted there";
}

TEST(ListScrollBar, KeepsItsRange) {
  QWidget list;
  ListScrollBar bar(&list);
  int changes = 0;
  QObject::connect(&bar, &ListScrollBar::Change, [&] {
    ++changes;
    bar.SetMax(bar.Max());  // as a repaint does
  });
  EXPECT_THROW(bar.SetMax(1), Failure);
  bar.SetMax(-100);
  EXPECT_THROW(bar.SetValue(-101), Failure);
  EXPECT_THROW(bar.SetValue(30), Failure);
  EXPECT_EQ(changes, 0);
  bar.SetValue(-100);
  EXPECT_EQ(changes, 1);
  bar.SetMax(-50);
  EXPECT_EQ(bar.Value(), -50);
  EXPECT_EQ(changes, 2);
}

TEST_F(Lists, TheScrollBarObeysTheMouse) {
  AddType(1, 40);
  Open();
  ListScrollBar* const bar = lists->scrModList;
  int scrolls = 0;
  int changes = 0;
  QObject::connect(bar, &ListScrollBar::Scroll, [&] { ++scrolls; });
  QObject::connect(bar, &ListScrollBar::Change, [&] { ++changes; });
  lists->picModList->setFocus();
  const auto clickAt = [&](int y) {
    QTest::mouseClick(bar, Qt::LeftButton, {}, {8, y});
    return lists->ModScroll;
  };
  EXPECT_EQ(clickAt(kHeight - 5), -30) << "the arrow";
  EXPECT_EQ(clickAt(80), -60) << "below the handle";
  EXPECT_EQ(clickAt(5), -30);
  EXPECT_EQ(clickAt(5), 0);
  EXPECT_EQ(changes, 4);
  EXPECT_TRUE(lists->picModList->hasFocus()) << "the bar never keeps the focus";

  QTest::mousePress(bar, Qt::LeftButton, {}, {8, 20});
  QTest::mouseMove(bar, {8, 50});
  EXPECT_LT(lists->ModScroll, -100);
  QTest::mouseMove(bar, {8, 115});
  EXPECT_EQ(lists->ModScroll, -1080);
  EXPECT_EQ(std::pair(scrolls, changes), std::pair(2, 4));
  QTest::mouseRelease(bar, Qt::LeftButton, {}, {8, 115});
  EXPECT_EQ(changes, 5);
  EXPECT_EQ(lists->ModScroll, -1080);
}

TEST_F(Lists, CanBeReadAndTickedByAScreenReader) {
  AddType(1, 6);
  AddType(2, 0);
  Open();
  QAccessibleInterface* const types = QAccessible::queryAccessibleInterface(lists->picTypeList);
  QAccessibleInterface* const mods = QAccessible::queryAccessibleInterface(lists->picModList);
  ASSERT_EQ(types->childCount(), 2);
  EXPECT_EQ(types->role(), QAccessible::List);
  EXPECT_EQ(types->text(QAccessible::Name), "Kategorien");
  QAccessibleInterface* const type = types->child(0);
  EXPECT_EQ(type->text(QAccessible::Name), "Typ1");
  EXPECT_EQ(type->text(QAccessible::Description), "Anzahl Mods: 6");
  EXPECT_TRUE(type->state().selected);

  ASSERT_EQ(mods->childCount(), 7) << "six rows and the scroll bar";
  EXPECT_EQ(mods->child(6)->role(), QAccessible::ScrollBar);
  QAccessibleInterface* const row = mods->child(5);
  EXPECT_EQ(mods->indexOfChild(row), 5);
  EXPECT_EQ(row->parent(), mods);
  EXPECT_EQ(row->role(), QAccessible::ListItem);
  EXPECT_EQ(row->text(QAccessible::Name), "Mod1.6");
  EXPECT_EQ(row->text(QAccessible::Description), QStringLiteral("Ü 1.6"));
  QAccessible::State state = row->state();
  EXPECT_TRUE(state.checkable && state.checked && state.offscreen);
  EXPECT_FALSE(state.selected);

  lists->picModList->setFocus();
  row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(Ticks(), "xxxxxx") << "the reader has its answer first";
  QCoreApplication::processEvents();
  EXPECT_EQ(Ticks(), "xxxxx.");
  state = row->state();
  EXPECT_FALSE(state.checked || state.offscreen);
  EXPECT_TRUE(state.focused);
  EXPECT_EQ(mods->focusChild(), row);
  EXPECT_TRUE(type->state().checkStateMixed);
  EXPECT_EQ(mods->childAt(row->rect().center().x(), row->rect().center().y()), row);

  types->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  QCoreApplication::processEvents();
  EXPECT_EQ(lists->CurType, 2);
  EXPECT_FALSE(row->isValid());
  EXPECT_EQ(mods->childCount(), 0);
  EXPECT_EQ(mods->text(QAccessible::Description), "Keine Mods in dieser Kategorie gefunden.");
  lists->picTypeList->setEnabled(false);
  EXPECT_THAT(type->actionInterface()->actionNames(), testing::IsEmpty());
}

TEST_F(Lists, TellAScreenReaderWhatHasChanged) {
  AddType(1, 2);
  Open();
  ListAccessibility::Changes changes;
  const auto since = [&] {
    std::string text;
    for (const auto& [kind, row] : changes.Since(*lists->picModList->Rows())) {
      if (kind == QAccessible::ObjectReorder) text += "other rows ";
      if (kind == QAccessible::StateChanged) text += "tick " + std::to_string(row) + " ";
      if (kind == QAccessible::Selection) text += "selection " + std::to_string(row) + " ";
    }
    return text;
  };
  EXPECT_EQ(since(), "other rows ");
  EXPECT_EQ(since(), "");
  lists->CurModRow = 2;
  pack.Mods[1].Selected = false;
  EXPECT_EQ(since(), "tick 1 selection 2 ");
  pack.Mods[2].Name = "C";
  pack.Mods[2].Selected = false;
  EXPECT_EQ(since(), "other rows selection 2 ");
  lists->CurModRow = 3;
  EXPECT_EQ(since(), "") << "a row that isn't there";
}
