#include <QAccessible>

#include "controls/ButtonFixture.h"

using enum ngBtnState;

namespace {

using ngBtnTest = ButtonFixture<ngBtn>;

constexpr ColourNumber kRed = 255;
constexpr ColourNumber kWhite = 16777215;

// ------------------------------------------------------------------------------- state machine

TEST_F(ngBtnTest, RaisesNoMouseMoveWhileUpAndNotUnderTheCursor) {
  Walk({{"come", "over", "Enter; Move 0 0 20 5"},
        {"press", "pressed", "Down 1 0 20 5"},
        {"leave", "normal", ".*Leave.*"}});
  hand.MoveTo(kOutside + QPoint(3, 3));
  EXPECT_EQ(Look(), "normal");
  EXPECT_THAT(Heard(), testing::MatchesRegex("(Enter)?"));
  EXPECT_FALSE(button.IsWatching());
}

TEST_F(ngBtnTest, LooksPressedInTheSecondHalfOfADoubleClick) {
  for (const bool value : {false, true}) {
    Leave();
    button.SetValue(value);
    hand.MoveTo(kInside);
    for (const auto& [name, look] :
         {std::pair(Qt::LeftButton, "pressed"), {Qt::RightButton, "over"}}) {
      hand.Click(name);
      QMouseEvent second(QEvent::MouseButtonDblClick, {20, 5}, QCursor::pos(), name, name, {});
      QApplication::sendEvent(&button, &second);
      EXPECT_EQ(Look(), look);
      hand.Release(name);
    }
  }
}

TEST_F(ngBtnTest, MovesToItsValueOnlyWhileUp) {
  for (const auto& [act, state] : {std::pair("come", kOverOff),
                                   {"press", kDownOff},
                                   {"release", kOverOff},
                                   {"leave", kUpOn}}) {
    Do(act);
    button.SetValue(true);
    EXPECT_EQ(button.State(), state);
  }
  button.SetValue(false);
  EXPECT_EQ(button.State(), kUpOff);
}

TEST_F(ngBtnTest, TogglesWhenExtendedAndKeepsValueInStep) {
  button.SetExtended(true);
  Walk({{"come", "over", ".*"}, {"press", "pressed", ".*"}, {"release", "over", ".*Click"}});
  EXPECT_EQ(button.State(), kOverOn);
  Walk({{"press right", "over", ".*"},
        {"release right", "over", "Up 2 0 20 5"},
        {"press", "pressed", ".*"},
        {"slip out", "normal|pressed", ".*"},
        {"release", "normal", "(Leave; )?Up 1 0 -40 -40(; Leave)?"}});
  EXPECT_EQ(button.State(), kUpOn);
  Walk({{"leave", "normal", ".*"},
        {"come", "over", ".*"},
        {"press", "pressed", ".*"},
        {"release", "over", ".*Click"},
        {"press", "pressed", ".*"},
        {"leave", "normal", ".*"},
        {"release", "normal", "Up 1 0 -40 -40"}});
  EXPECT_EQ(button.State(), kUpOff);

  QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&button);
  for (const ngBtnState state : {kUpOn, kUpOff}) {
    tree->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    EXPECT_EQ(button.State(), state);
    EXPECT_EQ(button.Value(), state == kUpOn);
    EXPECT_EQ(bool(tree->state().checkable), true);
    EXPECT_EQ(bool(tree->state().checked), state == kUpOn);
  }
}

// ------------------------------------------------------------------------------------- drawing

TEST_F(ngBtnTest, ShowsThePictureOfItsState) {
  int number = 0;
  for (const auto set :
       {&ngBtn::SetPicMouseUpOn, &ngBtn::SetPicMouseOverOn, &ngBtn::SetPicMouseDownOn,
        &ngBtn::SetPicMouseUpOff, &ngBtn::SetPicMouseOverOff, &ngBtn::SetPicMouseDownOff}) {
    (button.*set)(PlainPicture({88, 31}, QColor(++number, 0, 0)));
  }
  for (const bool value : {true, false}) {
    button.SetValue(value);
    int state = value ? 1 : 4;
    for (const char* const act : {"stay", "come", "press"}) {
      Do(act);
      EXPECT_EQ(static_cast<int>(button.State()), state);
      EXPECT_EQ(ColourAt(RenderedAt(button, 1), 1, 1), state++);
    }
    Do("release");
    Leave();
  }
}

TEST_F(ngBtnTest, LeavesPicturesAtTheirOwnSize) {
  QPalette palette;
  palette.setColor(QPalette::Window, Qt::white);
  hand.window.setPalette(palette);
  button.SetCaption("");
  QPixmap sharp = PlainPicture({20, 20}, Qt::red);
  sharp.setDevicePixelRatio(2.0);
  struct Row {
    QPixmap picture;
    QSize size;
    ColourNumber at9, at15;
  };
  for (const auto& [picture, size, at9, at15] :
       {Row{PlainPicture({15, 15}, Qt::red), {15, 15}, kRed, kWhite},
        Row{PlainPicture({200, 99}, Qt::red), {200, 99}, kRed, kRed},
        Row{sharp, {10, 10}, kRed, kWhite}, Row{QPixmap(), {0, 0}, kWhite, kWhite}}) {
    button.SetPicMouseUpOff(picture);
    EXPECT_EQ(button.Parts().picture.size(), size);
    for (const int scale : {1, 2}) {
      const QImage image = RenderedAt(button, scale);
      EXPECT_EQ(ColourAt(image, 9 * scale, 9 * scale), at9);
      EXPECT_EQ(ColourAt(image, 15 * scale, 15 * scale), at15);
    }
  }
}

TEST_F(ngBtnTest, DrawsItsFocusRectangleAndNoCaptionThatIsOff) {
  button.SetPicMouseUpOff(PlainPicture({88, 31}, Qt::white));
  EXPECT_LT(CountOf(kWhite, button), 88 * 31);
  button.SetHasCaptionOff(false);
  button.setFocus();
  EXPECT_EQ(CountOf(kWhite, button), 88 * 31);
  button.SetHasFocusRect(true);
  button.SetFocusDistance(3);
  const QImage image = RenderedAt(button, 1);
  EXPECT_EQ(ColourAt(image, 3, 3), 0);
  EXPECT_EQ(ColourAt(image, 4, 3), kWhite);
  EXPECT_EQ(ColourAt(image, 84, 4), 0);
  EXPECT_EQ(CountOf(0, button), (82 + 25 + 80 + 25 - 2) / 2);
  after.setFocus();
  EXPECT_EQ(CountOf(0, button), 0);
}

}  // namespace
