#include <QWidget>

#include <gmock/gmock.h>

#include "ui/SlidingPanel.h"

namespace {

using Timer = SlidingPanel::Timer;

constexpr int kTicks = 14;

/// A form of 675 by 591 with the panel; the test is the clock.
class Panel : public testing::Test {
 protected:
  Panel() {
    form.resize(675, 591);
    panel.SetHeight(90);
    panel.Place(675, 591);
  }
  void Up(int ticks) {
    for (int i = 0; i < ticks; ++i) panel.tmrPanelUp_Timer();
  }
  void Down(int ticks) {
    for (int i = 0; i < ticks; ++i) panel.tmrPanelDown_Timer();
  }
  [[nodiscard]] bool IsShown() const { return !panel.picPanel->isHidden(); }

  QWidget form;
  std::vector<bool> enabled;
  SlidingPanel panel{&form, [this](bool Enable) { enabled.push_back(Enable); }};
};

TEST_F(Panel, SlidesUpAndAwayInFourteenShrinkingSteps) {
  EXPECT_FALSE(IsShown());
  EXPECT_EQ(panel.picPanel->geometry(), QRect(172, 607, 330, 90));
  panel.EnableDown();  // never shown: nothing to send away
  EXPECT_EQ(panel.tmrPanelUp(), (Timer{15, false}));
  EXPECT_EQ(panel.tmrPanelDown(), (Timer{15, false}));

  panel.EnableUp();
  int top = 607;
  for (int step = kTicks; step >= 1; --step) {
    ASSERT_EQ(panel.tmrPanelUp(), (Timer{29 - step, true}));
    EXPECT_THAT(enabled, testing::IsEmpty());
    panel.tmrPanelUp_Timer();
    top -= step;
    ASSERT_EQ(panel.picPanel->y(), top);
    ASSERT_TRUE(IsShown());
  }
  EXPECT_EQ(top, 502);
  EXPECT_THAT(enabled, testing::ElementsAre(false));
  panel.EnableUp();  // it is up
  EXPECT_EQ(panel.tmrPanelUp(), (Timer{0, false}));
  EXPECT_EQ(panel.tmrPanelDown(), (Timer{15, false}));

  panel.EnableDown();
  Down(1);
  EXPECT_EQ(enabled.back(), true) << "the controls come back at the first step";
  EXPECT_EQ(panel.picPanel->y(), 516);
  panel.EnableUp();  // on its way down
  EXPECT_FALSE(panel.tmrPanelUp().Enabled);
  Down(kTicks - 1);
  EXPECT_FALSE(IsShown());
  EXPECT_EQ(panel.picPanel->y(), 607);
  panel.EnableDown();
  EXPECT_EQ(panel.tmrPanelUp(), (Timer{15, false}));
  EXPECT_EQ(panel.tmrPanelDown(), (Timer{0, false}));
}

TEST_F(Panel, EndsAtItsPlaceAfterATurn) {
  for (const bool isFirst : {true, false}) {  // the second time, both have run before
    panel.EnableUp();
    Up(5);
    panel.DisableUp();
    panel.EnableDown();
    ASSERT_TRUE(panel.tmrPanelDown().Enabled) << isFirst;
    Down(kTicks);
    EXPECT_FALSE(IsShown());
    EXPECT_EQ(panel.picPanel->y(), 607);
    EXPECT_EQ(panel.tmrPanelUp(), (Timer{15, false}));
  }
}

TEST_F(Panel, EndsAtItsPlaceAfterANewSize) {
  const auto resize = [&](int H) {
    form.resize(800, H);
    panel.Place(800, H);
  };
  panel.EnableUp();
  Up(4);  // 14 + 13 + 12 + 11 = 50 of 105
  resize(700);
  EXPECT_EQ(panel.picPanel->pos(), QPoint(235, 611)) << "at its end at once";
  Up(kTicks - 5);
  EXPECT_EQ(panel.picPanel->pos(), QPoint(235, 611 - 54)) << "and on from there";
  Up(1);
  EXPECT_EQ(panel.picPanel->pos(), QPoint(235, 611));
  panel.EnableDown();
  Down(4);
  resize(600);
  Down(kTicks - 4);
  EXPECT_EQ(panel.picPanel->pos(), QPoint(235, 616));
}

TEST_F(Panel, ShowsTheFrontPageAlone) {
  QWidget options(panel.picPanel);
  QWidget progress(panel.picPanel);
  panel.BringToFront(&options);
  EXPECT_FALSE(options.isHidden());
  EXPECT_TRUE(progress.isHidden());
  panel.BringToFront(&progress);
  EXPECT_TRUE(options.isHidden());
  EXPECT_FALSE(progress.isHidden());
}

}  // namespace
