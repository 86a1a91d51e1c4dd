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

double Contrast(const QColor& one, const QColor& other) {
  const auto light = [](const QColor& colour) {
    const auto part = [](double c) { return std::pow(c, 2.2); };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF());
  };
  const auto [dark, bright] = std::minmax({light(one), light(other)});
  return (bright + 0.05) / (dark + 0.05);
}

TYPED_TEST(Buttons, FadeTheirCaptionWhileDisabledAndKeepItLegible) {
  QFont font = Fonts::Tahoma(16);
  font.setStyleStrategy(QFont::NoAntialias);
  auto& control = this->button;
  for (const auto& [face, letters] : {std::pair(10784648, 0), {4336663, 12632256}}) {
    const QPixmap picture = PlainPicture(control.size(), Colours::ToQColor(face));
    if constexpr (std::is_same_v<TypeParam, skinBtn>) {
      control.SetFontNormal(font);
      control.SetForeColorNormal(letters);
      control.SetBackColorNormal(face);
      control.SetFrameColorNormal(face);
    } else {
      control.SetValue(true);
      control.SetPicMouseUpOn(picture);
      control.SetFontMouseUpOn(font);
      control.SetForeColorMouseUpOn(letters);
    }
    control.SetEnabled(false);
    const QImage image = RenderedAt(control, 1).copy(0, 0, 50, 17);  // without shadow
    double best = 0;
    for (int i = 0; i < image.width() * image.height(); ++i) {
      const QColor colour = image.pixelColor(i % image.width(), i / image.width());
      best = std::max(best, Contrast(colour, Colours::ToQColor(face)));
      ASSERT_NE(colour, Colours::ToQColor(letters));
    }
    EXPECT_GT(best, 3);
    control.SetEnabled(true);
  }
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
  EXPECT_EQ(this->Heard(), "") << "the reader has its answer first";
  QCoreApplication::processEvents();
  EXPECT_EQ(this->Heard(), "Click");
  this->button.SetEnabled(false);
  EXPECT_TRUE(tree->state().disabled);
  actions->doAction(press);
  QCoreApplication::processEvents();
  EXPECT_EQ(this->Heard(), "");
}

}  // namespace
