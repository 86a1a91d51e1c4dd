#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QTest>
#include <QVBoxLayout>
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

void ShowAt(QWidget& window, const QRect& place) {
  window.setGeometry(place);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
}

}  // namespace

TEST(clsSubClass, KeepsOneHookWhileItIsReAimed) {
  List types;
  List mods;
  Hook hook;
  EXPECT_TRUE(hook.StopSubClass());
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
  hook.StopSubClass();
  Turn(mods, 120);
  EXPECT_EQ(hook.steps.size(), 2U);
}

TEST(clsSubClass, AddsSmallTurnsUp) {
  List list;
  Hook hook;
  const auto deltas = [&](std::initializer_list<int> turns) {
    hook.steps.clear();
    for (const int turn : turns) {
      Turn(list, turn);
      Turn(list, 0, 15);  // sideways on the way
      hook.StopSubClass();
      hook.StartSubclass(&list);  // as every move of the mouse does
    }
    std::vector<int> result;
    for (const auto& [window, delta] : hook.steps) result.push_back(delta);
    return result;
  };
  hook.StartSubclass(&list);
  EXPECT_THAT(deltas({50, 50}), ElementsAre());
  EXPECT_THAT(deltas({50}), ElementsAre(120));
  EXPECT_THAT(deltas({-60, -60}), ElementsAre(-120)) << "the rest of the way up doesn't count";
  EXPECT_THAT(deltas({-360}), ElementsAre(-120)) << "one message, one event";
  EXPECT_THAT(deltas({110}), ElementsAre());
  List other;
  hook.StopSubClass();
  hook.StartSubclass(&other);
  Turn(other, 20);
  EXPECT_EQ(hook.steps.size(), 0U) << "another list starts afresh";
}

TEST(clsSubClass, DropsWhatTheHandlerCancels) {
  List list;
  Hook hook;
  hook.StartSubclass(&list);
  hook.drop = true;
  Turn(list, 120);
  EXPECT_EQ(list.wheels, 0);
}

TEST(clsSubClass, SurvivesWhatItsHandlersDelete) {
  auto list = std::make_unique<List>();
  auto hook = std::make_unique<Hook>();
  hook->StartSubclass(list.get());
  list.reset();
  EXPECT_FALSE(hook->Hooked());
  list = std::make_unique<List>();
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
  QWidget form;
  DelWindowCaption(&form);
  ShowAt(form, {50, 50, 500, 300});
  basMinMax::HookMinMax(&form, 400, 250);
  form.resize(100, 280);
  EXPECT_EQ(form.size(), QSize(400, 280));
  basMinMax::UnhookMinMax(&form);
  basMinMax::HookMinMax(&form, 600, 350);
  EXPECT_EQ(form.size(), QSize(400, 280)) << "a raised minimum waits";
  form.resize(390, 280);
  EXPECT_EQ(form.size(), QSize(600, 350));
  form.resize(10, 10);
  EXPECT_EQ(form.size(), QSize(600, 350));
  basMinMax::HookMinMax(&form, 300, 200);
  form.resize(10, 10);
  EXPECT_EQ(form.size(), QSize(300, 200));
  basMinMax::UnhookMinMax(&form);
  form.resize(90, 80);
  EXPECT_EQ(form.size(), QSize(90, 80));
}

TEST(basMinMax, TellsTheFormOnlySizesThatHold) {
  struct Form : QWidget {
    void resizeEvent(QResizeEvent* event) override { sizes.push_back(event->size()); }
    std::vector<QSize> sizes;
  } form;
  DelWindowCaption(&form);
  ShowAt(form, {50, 50, 300, 200});
  basMinMax::HookMinMax(&form, 400, 250);
  form.sizes.clear();
  form.resize(310, 200);
  EXPECT_THAT(form.sizes, ElementsAre(QSize(400, 250)));
}

TEST(basMinMax, CountsTheFrame) {
  QWidget form;
  ShowAt(form, {50, 50, 500, 300});
  basMinMax::HookMinMax(&form, 400, 250);
  form.resize(10, 10);
  EXPECT_EQ(form.frameGeometry().size(), QSize(400, 250));
}

TEST(DelWindowCaption, KeepsThePlaceOfTheWholeWindow) {
  QWidget form;
  ShowAt(form, {50, 60, 500, 300});
  form.activateWindow();
  QApplication::setActiveWindow(&form);
  const QRect whole = form.frameGeometry();
  const QWindow* const handle = form.windowHandle();
  DelWindowCaption(&form);
  QCoreApplication::processEvents();
  EXPECT_TRUE(form.windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_TRUE(handle->flags().testFlag(Qt::FramelessWindowHint));
  EXPECT_TRUE(form.isVisible());
  EXPECT_TRUE(form.isActiveWindow());
  EXPECT_EQ(form.windowHandle(), handle) << "the window itself stays";
  EXPECT_EQ(form.geometry(), whole);
}

TEST(DelWindowCaption, WorksBeforeTheWindowIsShown) {
  QWidget form;
  form.setGeometry(70, 80, 400, 300);
  DelWindowCaption(&form);
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(form.geometry(), QRect(70, 80, 400, 300));
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
  EXPECT_EQ(form.geometry(), QRect(70, 80, 400, 300));
  EXPECT_EQ(form.frameGeometry(), form.geometry());
}

TEST(hWndByMouse, AsksTheCursorWhoeverHasTheMouse) {
  QWidget form;
  QWidget left(&form);
  QWidget right(&form);
  left.setGeometry(0, 0, 100, 100);
  right.setGeometry(100, 0, 100, 100);
  ShowAt(form, {40, 40, 200, 150});
  left.grabMouse();
  QCursor::setPos(right.mapToGlobal(QPoint(10, 10)));
  EXPECT_EQ(hWndByMouse(), &right);
  QCursor::setPos(form.mapToGlobal(QPoint(10, 140)));
  EXPECT_EQ(hWndByMouse(), &form);
  QCursor::setPos(form.mapToGlobal(QPoint(300, 300)));
  EXPECT_EQ(hWndByMouse(), nullptr);
  left.releaseMouse();
}

TEST(PointerWatch, KnowsWhenThePointerHasLeftAllWindows) {
  const PointerWatch watch;
  QWindow first;
  QWindow second;
  QWidget widget;
  const auto leave = [](QObject& object) {
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&object, &event);
  };
  const auto enter = [](QObject& object) {
    QEnterEvent event({1, 1}, {1, 1}, {1, 1});
    QCoreApplication::sendEvent(&object, &event);
  };
  EXPECT_TRUE(watch.IsInside());
  leave(widget);
  EXPECT_TRUE(watch.IsInside());
  leave(first);
  EXPECT_FALSE(watch.IsInside());
  enter(second);
  EXPECT_TRUE(watch.IsInside());
}
