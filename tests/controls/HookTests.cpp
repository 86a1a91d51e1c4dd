#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/window/DelWindowCaption.h"
#include "platform/window/PointerWatch.h"
#include "platform/window/WindowDrag.h"
#include "platform/window/basMinMax.h"
#include "platform/window/clsSubClass.h"
#include "platform/window/hWndByMouse.h"

namespace {

using testing::ElementsAre;

struct List : QWidget {
  void wheelEvent(QWheelEvent* event) override {
    ++wheels;
    event->accept();
  }
  int wheels = 0;
};

void Turn(QWidget& widget, int delta, int sideways = 0) {
  QWheelEvent event({5, 5}, widget.mapToGlobal(QPointF(5, 5)), {}, {sideways, delta}, Qt::NoButton,
                    {}, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&widget, &event);
}

struct Hook : clsSubClass {
  Hook() {
    connect(this, &clsSubClass::MessageCatched, [this](QWidget* window, int delta, bool& cancel) {
      steps.emplace_back(window, delta);
      cancel = drop;
    });
  }
  std::vector<std::pair<QWidget*, int>> steps;
  bool drop = false;
};

struct Form : QWidget {
  void resizeEvent(QResizeEvent* event) override { sizes.push_back(event->size()); }
  void ShowAt(const QRect& place) {
    setGeometry(place);
    show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(this));
  }
  std::vector<QSize> sizes;
};

}  // namespace

TEST(clsSubClass, KeepsOneHookWhileItIsReAimed) {
  List types;
  List mods;
  Hook hook;
  EXPECT_FALSE(hook.StartSubclass(nullptr));
  for (QWidget* const list : {&types, &mods, &types, &mods}) {
    EXPECT_TRUE(hook.StopSubClass());
    EXPECT_TRUE(hook.StartSubclass(list));
    EXPECT_FALSE(hook.StartSubclass(&types)) << "a second one isn't put on top";
  }
  Turn(types, 120);
  Turn(mods, 120);
  Turn(mods, -120);
  EXPECT_THAT(hook.steps, ElementsAre(std::pair(&mods, 120), std::pair(&mods, -120)));
  EXPECT_EQ(mods.wheels, 2) << "the list's own handler still runs";
  hook.drop = true;
  Turn(mods, -120);
  EXPECT_EQ(mods.wheels, 2) << "unless it is told not to";
  hook.StopSubClass();
  Turn(mods, -120);
  EXPECT_EQ(hook.steps.size(), 3U);
  EXPECT_EQ(mods.wheels, 3);
}

TEST(clsSubClass, AddsSmallTurnsUp) {
  List list;
  Hook hook;
  // What was heard after each turn: a whole step, once, or nothing.
  for (const auto& [turn, step] : {std::pair(50, 0),
                                   {50, 0},
                                   {50, 120},
                                   {-60, 0},  // the rest of the way up doesn't count
                                   {-60, -120},
                                   {-360, -120},
                                   {110, 0}}) {
    hook.StopSubClass();  // as every move of the mouse does
    hook.StartSubclass(&list);
    Turn(list, turn);
    Turn(list, 0, 15);  // sideways on the way
    EXPECT_EQ(hook.steps.empty() ? 0 : hook.steps.front().second, step) << turn;
    EXPECT_LE(hook.steps.size(), 1U);
    hook.steps.clear();
  }
  List other;
  hook.StopSubClass();
  hook.StartSubclass(&other);
  Turn(other, 20);
  EXPECT_EQ(hook.steps.size(), 0U) << "another list starts afresh";
}

TEST(clsSubClass, SurvivesWhatItsHandlersDelete) {
  auto list = std::make_unique<List>();
  auto hook = std::make_unique<Hook>();
  hook->StartSubclass(list.get());
  list = std::make_unique<List>();
  EXPECT_FALSE(hook->Hooked());
  EXPECT_TRUE(hook->StartSubclass(list.get()));
  QObject::connect(hook.get(), &clsSubClass::MessageCatched, [&] { list.reset(); });
  Turn(*list, 240);
  EXPECT_EQ(hook->steps.size(), 1U);

  list = std::make_unique<List>();
  hook = std::make_unique<Hook>();
  hook->StartSubclass(list.get());
  QObject::connect(hook.get(), &clsSubClass::MessageCatched, [&] { hook.reset(); });
  Turn(*list, 240);
  EXPECT_EQ(hook, nullptr);
}

TEST(basMinMax, TakesEffectAtTheNextChangeOfSize) {
  Form form;
  DelWindowCaption(&form);
  form.ShowAt({50, 50, 500, 300});
  struct Row {
    QSize limit, wanted, size;
  };
  for (const auto& [limit, wanted, size] :
       {Row{{400, 250}, {100, 280}, {400, 280}}, Row{{600, 350}, {390, 280}, {600, 350}},
        Row{{600, 350}, {10, 10}, {600, 350}}, Row{{300, 200}, {10, 10}, {300, 200}},
        Row{{0, 0}, {90, 80}, {90, 80}}}) {
    const QSize before = form.size();
    basMinMax::UnhookMinMax(&form);
    if (!limit.isEmpty()) basMinMax::HookMinMax(&form, 999, 999);  // which the next replaces
    if (!limit.isEmpty()) basMinMax::HookMinMax(&form, limit.width(), limit.height());
    EXPECT_EQ(form.size(), before) << "a raised minimum waits";
    form.sizes.clear();
    form.resize(wanted);
    EXPECT_EQ(form.size(), size);
    const std::vector<QSize> heard = size == before ? std::vector<QSize>() : std::vector{size};
    EXPECT_EQ(form.sizes, heard) << "the form is told of sizes that hold";
  }
}

TEST(basMinMax, CountsTheFrame) {
  Form form;
  form.ShowAt({50, 50, 500, 300});
  basMinMax::HookMinMax(&form, 400, 250);
  form.resize(10, 10);
  EXPECT_EQ(form.frameGeometry().size(), QSize(400, 250));
}

TEST(DelWindowCaption, KeepsThePlaceOfTheWholeWindow) {
  Form form;
  form.ShowAt({50, 60, 500, 300});
  QApplication::setActiveWindow(&form);
  const QRect whole = form.frameGeometry();
  const QWindow* const handle = form.windowHandle();
  DelWindowCaption(&form);
  QCoreApplication::processEvents();
  EXPECT_TRUE(form.windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_TRUE(form.isVisible() && form.isActiveWindow());
  EXPECT_EQ(form.windowHandle(), handle) << "the window itself stays";
  EXPECT_TRUE(handle->flags().testFlag(Qt::FramelessWindowHint));
  EXPECT_EQ(form.geometry(), whole);

  Form hidden;
  hidden.setGeometry(70, 80, 400, 300);
  DelWindowCaption(&hidden);
  EXPECT_FALSE(hidden.isVisible());
  hidden.ShowAt({70, 80, 400, 300});
  EXPECT_EQ(hidden.geometry(), QRect(70, 80, 400, 300));
  EXPECT_EQ(hidden.frameGeometry(), hidden.geometry());
}

TEST(WindowDrag, DragsTheTakenEdgesDownToTheSmallestSize) {
  const auto dragged = [](Qt::Edges edges, const QPoint& way) {
    return WindowDrag::Dragged({100, 100, 600, 400}, edges, way, {500, 300}, {900, 900});
  };
  EXPECT_EQ(dragged(Qt::RightEdge | Qt::BottomEdge, {50, -20}), QRect(100, 100, 650, 380));
  EXPECT_EQ(dragged(Qt::LeftEdge | Qt::TopEdge, {-10, 30}), QRect(90, 130, 610, 370));
  EXPECT_EQ(dragged(Qt::LeftEdge, {900, 0}), QRect(200, 100, 500, 400));
  EXPECT_EQ(dragged(Qt::RightEdge, {900, 0}), QRect(100, 100, 900, 400));
  EXPECT_EQ(dragged(WindowDrag::kAllEdges, {-7, 900}), QRect(93, 1000, 600, 400));
  EXPECT_EQ(dragged(Qt::BottomEdge, {0, -900}), QRect(100, 100, 600, 300));
}

TEST(hWndByMouse, AsksTheCursorWhoeverHasTheMouse) {
  Form form;
  QWidget left(&form);
  QWidget right(&form);
  left.setGeometry(0, 0, 100, 100);
  right.setGeometry(100, 0, 100, 100);
  form.ShowAt({40, 40, 200, 150});
  left.grabMouse();
  using Place = std::pair<QPoint, QWidget*>;
  for (const auto& [place, widget] :
       {Place{{110, 10}, &right}, Place{{10, 140}, &form}, Place{{300, 300}, nullptr}}) {
    QCursor::setPos(form.mapToGlobal(place));
    EXPECT_EQ(hWndByMouse(), widget);
  }
  left.releaseMouse();
}

TEST(PointerWatch, KnowsTheWidgetByTheWindowsOwnEvents) {
  const PointerWatch watch;
  Form first;
  Form second;
  QWidget child(&first);
  child.setGeometry(100, 0, 100, 100);
  for (Form* const form : {&first, &second}) form->ShowAt({0, 0, 200, 150});
  const auto tell = [](Form& form, QEvent::Type type, const QPointF& place) {
    QMouseEvent mouse(type, place, place, place, Qt::NoButton, Qt::NoButton, {});
    QEnterEvent enter(place, place, place);
    QEvent leave(QEvent::Leave);
    QEvent& event = type == QEvent::Enter   ? static_cast<QEvent&>(enter)
                    : type == QEvent::Leave ? leave
                                            : mouse;
    QCoreApplication::sendEvent(form.windowHandle(), &event);
  };
  tell(first, QEvent::MouseMove, {110, 10});
  EXPECT_EQ(watch.Widget(), &child) << "the other window believes to be in front of it";
  tell(first, QEvent::Leave, {});
  EXPECT_EQ(watch.Widget(), nullptr);
  tell(second, QEvent::Enter, {110, 10});
  EXPECT_EQ(watch.Widget(), &second);
  tell(second, QEvent::MouseMove, {300, 10});
  EXPECT_EQ(watch.Widget(), nullptr) << "a button is held";
}
