#include <QAccessible>

#include "controls/ButtonFixture.h"

// What both buttons have in common, the picture button off and on.

namespace {

struct ngBtnOn : ngBtn {
  explicit ngBtnOn(QWidget* parent) : ngBtn(parent) { SetValue(true); }
};

template <typename Button>
class Buttons : public ButtonFixture<Button> {};
using Kinds = testing::Types<skinBtn, ngBtn, ngBtnOn>;
TYPED_TEST_SUITE(Buttons, Kinds, );

TYPED_TEST(Buttons, ClickWithTheLeftButtonReleasedOnThem) {
  this->Walk({{"come", "over", "Enter; Move 0 0 20 5"}});
  this->hand.Press(Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier);
  EXPECT_EQ(this->Heard(), "Down 1 5 20 5");
  this->Walk({
      {"release", "over", "Up 1 0 20 5; Click"},
      {"leave", "normal", "Leave"},
      {"come", "over", "Enter; Move 0 0 20 5"},
      {"press", "pressed", "Down 1 0 20 5"},
      {"leave", "normal", ".*Leave.*"},
      {"come", "pressed", "(Enter; )?Move 1 0 20 5"},
      {"release", "over", "Up 1 0 20 5; Click"},
      {"press", "pressed", "Down 1 0 20 5"},
      {"slip out", "normal|pressed", ".*"},
      {"release", "normal", "(Leave; )?Up 1 0 -40 -40(; Leave)?"},
  });
}

TYPED_TEST(Buttons, StayOverWithOtherButtons) {
  const std::string right = " 2 0 20 5";
  const std::string middle = " 4 0 20 5";
  this->Walk({
      {"come", "over", "Enter; Move 0 0 20 5"},
      {"press right", "over", "Down" + right},
      {"move on", "over", "Move 2 0 21 5"},
      {"leave", "normal", ".*Leave.*"},
      {"come", "over", "(Enter; )?Move" + right},
      {"release right", "over", "Up" + right},
      {"press middle", "over", "Down" + middle},
      {"leave", "normal", ".*Leave.*"},
      {"come", "over", "(Enter; )?Move" + middle},
      {"release middle", "over", "Up" + middle},
  });
}

// To the picture button, the second press of a double click is no mouse-down.
TYPED_TEST(Buttons, ClickForEachPressOfADoubleClick) {
  const std::string down = this->kIsSkinBtn ? "Down 1 0 20 5; " : "";
  const std::string click = "Up 1 0 20 5; Click";
  this->Walk({{"come", "over", ".*"},
              {"double-click", "over", "Down 1 0 20 5; " + click + "; " + down + click}});
}

TYPED_TEST(Buttons, AskForTheWidgetUnderTheCursor) {
  this->Walk({{"come", "over", ".*"}, {"press", "pressed", ".*"}});
  QWidget cover(&this->hand.window);
  cover.setGeometry(this->button.geometry());
  cover.show();
  const std::string click = this->kIsSkinBtn ? "; Click" : "";  // which looks at the place alone
  this->Walk({{"release", "normal", "(Leave; )?Up 1 0 20 5" + click + "(; Leave)?"}});
}

TYPED_TEST(Buttons, HearNoMouseWhileDisabled) {
  this->button.SetEnabled(false);
  this->Walk({{"come", "normal", ""}, {"press", "normal", ""}, {"release", "normal", ""}});
}

TYPED_TEST(Buttons, DrawTheirCaptionInGreyWhileDisabled) {
  QFont font = Fonts::Tahoma(16);
  font.setStyleStrategy(QFont::NoAntialias);
  auto& control = this->button;
  if constexpr (std::is_same_v<TypeParam, skinBtn>) {
    control.SetFontNormal(font);
    control.SetForeColorNormal(255);
  } else {
    control.SetValue(true);
    control.SetFontMouseUpOn(font);
    control.SetForeColorMouseUpOn(255);
  }
  const ColourNumber grey = Colours::GetSysColor(Colours::kGrayText);
  const ColourNumber highlight = Colours::GetSysColor(Colours::kButtonHighlight);
  EXPECT_GT(CountOf(255, control), 10);
  EXPECT_EQ(CountOf(grey, control) + CountOf(highlight, control), 0);
  control.SetEnabled(false);
  EXPECT_EQ(CountOf(255, control), 0);
  EXPECT_GT(CountOf(grey, control), 10);
  EXPECT_GT(CountOf(highlight, control), 0);
}

TYPED_TEST(Buttons, StandInTheAccessibilityTree) {
  QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&this->button);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->role(), QAccessible::PushButton);
  EXPECT_EQ(tree->text(QAccessible::Name), "Ok");
  EXPECT_FALSE(tree->state().pressed || tree->state().focused || tree->state().checkable);
  this->Walk({{"come", "over", ".*"}, {"press", "pressed", ".*"}});
  this->button.setFocus();
  EXPECT_TRUE(tree->state().pressed && tree->state().focused);
  QAccessibleActionInterface* const actions = tree->actionInterface();
  ASSERT_NE(actions, nullptr);
  const QString press = QAccessibleActionInterface::pressAction();
  EXPECT_TRUE(actions->actionNames().contains(press));
  actions->doAction(press);
  EXPECT_EQ(this->Heard(), "Click");
  this->button.SetEnabled(false);
  EXPECT_TRUE(tree->state().disabled);
  actions->doAction(press);
  EXPECT_EQ(this->Heard(), "");
}

}  // namespace
