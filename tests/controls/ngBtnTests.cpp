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

TEST_F(ngBtnTest, ShowsTheRowOfItsState) {
  struct Row {
    void (ngBtn::*setPicture)(const QPixmap&);
    void (ngBtn::*setFont)(const QFont&);
    void (ngBtn::*setColour)(ColourNumber);
    QColor colour;
  };
  const std::vector<Row> rows = {
      {&ngBtn::SetPicMouseUpOn, &ngBtn::SetFontMouseUpOn, &ngBtn::SetForeColorMouseUpOn, Qt::red},
      {&ngBtn::SetPicMouseOverOn, &ngBtn::SetFontMouseOverOn, &ngBtn::SetForeColorMouseOverOn,
       Qt::green},
      {&ngBtn::SetPicMouseDownOn, &ngBtn::SetFontMouseDownOn, &ngBtn::SetForeColorMouseDownOn,
       Qt::blue},
      {&ngBtn::SetPicMouseUpOff, &ngBtn::SetFontMouseUpOff, &ngBtn::SetForeColorMouseUpOff,
       Qt::cyan},
      {&ngBtn::SetPicMouseOverOff, &ngBtn::SetFontMouseOverOff, &ngBtn::SetForeColorMouseOverOff,
       Qt::magenta},
      {&ngBtn::SetPicMouseDownOff, &ngBtn::SetFontMouseDownOff, &ngBtn::SetForeColorMouseDownOff,
       Qt::yellow},
  };
  int number = 0;
  for (const auto& [setPicture, setFont, setColour, colour] : rows) {
    ++number;
    (button.*setPicture)(PlainPicture({88, 31}, colour));
    (button.*setFont)(Fonts::Tahoma(10 + number));
    (button.*setColour)(number);
  }
  button.SetHasCaptionOff(false);
  const auto check = [&](int state) {
    ASSERT_EQ(static_cast<int>(button.State()), state);
    const ngBtnParts parts = button.Parts();
    EXPECT_EQ(RenderedAt(button, 1).pixelColor(1, 1),
              rows[static_cast<std::size_t>(state - 1)].colour);
    EXPECT_EQ(parts.ForeColor, state);
    EXPECT_EQ(parts.Font.pixelSize(), 10 + state);
    EXPECT_EQ(parts.captionVisible, state <= 3);
    const int height = Fonts::CaptionSize(parts.Font, "#p").height();
    EXPECT_EQ(parts.lblCaption, QRect(0, RoundToEven((31 - height) / 2.0), 88, height));
  };
  for (const int first : {1, 4}) {
    button.SetValue(first == 1);
    check(first);
    Do("come");
    check(first + 1);
    Do("press");
    check(first + 2);
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

TEST_F(ngBtnTest, TakesItsMousePointerByNumber) {
  button.SetMouseIcon(PlainPicture({16, 16}, Qt::red));
  for (const auto& [number, shape] : {std::pair(15, Qt::SizeAllCursor),
                                      {1, Qt::ArrowCursor},
                                      {11, Qt::WaitCursor},
                                      {99, Qt::BitmapCursor}}) {
    button.SetMousePointer(number);
    EXPECT_EQ(button.cursor().shape(), shape);
  }
  button.SetMousePointer(0);
  EXPECT_FALSE(button.testAttribute(Qt::WA_SetCursor));
}

}  // namespace
