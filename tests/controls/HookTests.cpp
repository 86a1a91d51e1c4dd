#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/window/DelWindowCaption.h"
#include "platform/window/PointerWatch.h"
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

TEST(PointerWatch, KnowsWhenThePointerHasLeftAllWindows) {
  const PointerWatch watch;
  QWindow first;
  QWindow second;
  QWidget widget;
  QEvent leave(QEvent::Leave);
  QEnterEvent enter({1, 1}, {1, 1}, {1, 1});
  EXPECT_TRUE(watch.IsInside());
  QCoreApplication::sendEvent(&widget, &leave);
  EXPECT_TRUE(watch.IsInside());
  QCoreApplication::sendEvent(&first, &leave);
  EXPECT_FALSE(watch.IsInside());
  QCoreApplication::sendEvent(&second, &enter);
  EXPECT_TRUE(watch.IsInside());
}
