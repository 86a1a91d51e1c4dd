#include <QAccessible>
#include <QSignalSpy>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "controls/Fonts.h"
#include "controls/Hand.h"
#include "controls/ngBtn.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using enum ngBtnState;

namespace {

constexpr QPoint kInside(60, 55);
constexpr QPoint kOutside(10, 10);

QPixmap Plain(const QColor& colour, QSize size = {88, 31}) {
  QPixmap picture(size);
  picture.fill(colour);
  return picture;
}

class ngBtnTest : public testing::Test {
 protected:
  ngBtnTest() {
    button.setGeometry(50, 50, 88, 31);
    button.SetCaption("Ende");
    after.move(50, 120);
    after.setFocusPolicy(Qt::StrongFocus);
    const auto mouse = [this](const char* name) {
      return [this, name](int pressed, int shift, float x, float y) {
        log.push_back(name + std::string(" ") + std::to_string(pressed) + " " +
                      std::to_string(shift) + " " + std::to_string(int(x)) + "," +
                      std::to_string(int(y)));
      };
    };
    const auto plain = [this](const char* name) {
      return [this, name] { log.emplace_back(name); };
    };
    QObject::connect(&button, &ngBtn::MouseDown, mouse("MouseDown"));
    QObject::connect(&button, &ngBtn::MouseUp, mouse("MouseUp"));
    QObject::connect(&button, &ngBtn::MouseMove, [this] { moves += 1; });
    QObject::connect(&button, &ngBtn::Click, plain("Click"));
    QObject::connect(&button, &ngBtn::MouseEnter, plain("MouseEnter"));
    QObject::connect(&button, &ngBtn::MouseLeave, plain("MouseLeave"));
    hand.Open();
    after.setFocus();
  }

  std::vector<std::string> Events() { return std::exchange(log, {}); }

  // Moves the mouse out and waits until the control has noticed.
  void Leave() {
    QSignalSpy leave(&button, &ngBtn::MouseLeave);
    hand.MoveTo(kOutside);
    if (leave.isEmpty()) leave.wait();
  }

  Hand hand;
  ngBtn button{&hand.window};
  QWidget after{&hand.window};
  std::vector<std::string> log;
  int moves = 0;
};

ColourNumber At(const QImage& image, int x, int y) {
  return Colours::FromQColor(image.pixelColor(x, y));
}

TEST(ngBtnDefaults, AreThoseOfANewControl) {
  ngBtn button;
  button.setObjectName("cmdInstall");
  EXPECT_EQ(button.Caption(), "cmdInstall");
  EXPECT_EQ(button.State(), kUpOff);
  EXPECT_TRUE(button.PicMouseDownOn().isNull());
  EXPECT_EQ(button.FontMouseOverOff(), Fonts::Tahoma());
  EXPECT_EQ(button.ForeColorMouseUpOff(), 0);
  EXPECT_TRUE(button.HasCaptionOff() && button.HasCaptionOn() && button.Enabled());
  EXPECT_FALSE(button.Extended() || button.HasFocusRect() || button.Value());
  EXPECT_EQ(button.MousePointer(), 0);
  EXPECT_EQ(button.FocusDistance(), 2);
  EXPECT_FALSE(button.IsWatching());
}

// ------------------------------------------------------------------------------- state machine

// The same walk through all states of a position, off and on.
TEST_F(ngBtnTest, WalksThroughTheStatesOfItsPosition) {
  struct Position {
    bool value;
    ngBtnState up, over, down;
  };
  for (const auto& [value, up, over, down] :
       {Position{false, kUpOff, kOverOff, kDownOff}, Position{true, kUpOn, kOverOn, kDownOn}}) {
    button.SetValue(value);
    EXPECT_EQ(button.State(), up);
    hand.MoveTo(kInside);
    EXPECT_EQ(button.State(), over);
    EXPECT_TRUE(button.IsWatching());
    hand.Press(Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(button.State(), down);
    hand.Release(Qt::LeftButton);
    EXPECT_EQ(button.State(), over);
    EXPECT_THAT(Events(),
                ElementsAre("MouseEnter", "MouseDown 1 2 10,5", "MouseUp 1 0 10,5", "Click"));
    Leave();
    EXPECT_EQ(button.State(), up);
    EXPECT_FALSE(button.IsWatching());
    EXPECT_THAT(Events(), ElementsAre("MouseLeave"));
    EXPECT_EQ(button.Value(), value);
  }
}

TEST_F(ngBtnTest, ComesBackPressedWithTheButtonHeldAndClicks) {
  for (const bool value : {false, true}) {
    button.SetValue(value);
    hand.MoveTo(kInside);
    hand.Press(Qt::LeftButton);
    Leave();
    EXPECT_EQ(button.State(), value ? kUpOn : kUpOff);
    hand.MoveTo(kInside);
    EXPECT_EQ(button.State(), value ? kDownOn : kDownOff);
    hand.Release(Qt::LeftButton);
    EXPECT_EQ(button.State(), value ? kOverOn : kOverOff);
    EXPECT_THAT(Events(), ElementsAre("MouseEnter", "MouseDown 1 0 10,5", "MouseLeave",
                                      "MouseEnter", "MouseUp 1 0 10,5", "Click"));
    Leave();
    Events();
  }
}

TEST_F(ngBtnTest, DoesNotClickWhenReleasedElsewhere) {
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  Events();
  hand.MoveTo(kOutside);
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(button.State(), kUpOff);
  EXPECT_THAT(Events(), Contains("MouseUp 1 0 -40,-40"));
  EXPECT_THAT(log, Not(Contains("Click")));
}

TEST_F(ngBtnTest, RaisesNoMouseMoveWhileUpAndNotUnderTheCursor) {
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  Leave();
  moves = 0;
  hand.MoveTo(kOutside + QPoint(3, 3));
  EXPECT_EQ(moves, 0);
  EXPECT_EQ(button.State(), kUpOff);
  EXPECT_FALSE(button.IsWatching());
  hand.MoveTo(kInside);
  EXPECT_EQ(moves, 1);
}

TEST_F(ngBtnTest, AsksForTheWindowUnderTheCursor) {
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  QWidget cover(&hand.window);
  cover.setGeometry(button.geometry());
  cover.show();
  Events();
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(button.State(), kUpOff);
  EXPECT_THAT(Events(), ElementsAre("MouseUp 1 0 10,5"));
}

TEST_F(ngBtnTest, StaysOverWithOtherButtons) {
  hand.MoveTo(kInside);
  Events();
  for (const auto& [name, number] : {std::pair(Qt::RightButton, "2"), {Qt::MiddleButton, "4"}}) {
    hand.Press(name);
    EXPECT_EQ(button.State(), kOverOff);
    Leave();
    hand.MoveTo(kInside);
    EXPECT_EQ(button.State(), kOverOff);
    hand.Release(name);
    EXPECT_EQ(button.State(), kOverOff);
    const std::string place = std::string(number) + " 0 10,5";
    EXPECT_THAT(Events(),
                ElementsAre("MouseDown " + place, "MouseLeave", "MouseEnter", "MouseUp " + place));
  }
}

TEST_F(ngBtnTest, RaisesNoMouseDownForTheSecondHalfOfADoubleClickButLooksPressed) {
  for (const bool value : {false, true}) {
    button.SetValue(value);
    hand.MoveTo(kInside);
    Events();
    QTest::mouseDClick(hand.window.windowHandle(), Qt::LeftButton, {}, kInside);
    EXPECT_THAT(Events(), ElementsAre("MouseDown 1 0 10,5", "MouseUp 1 0 10,5", "Click",
                                      "MouseUp 1 0 10,5", "Click"));

    const QPoint inside = kInside - button.pos();
    QMouseEvent second(QEvent::MouseButtonDblClick, inside, QCursor::pos(), Qt::LeftButton,
                       Qt::LeftButton, {});
    QApplication::sendEvent(&button, &second);
    EXPECT_EQ(button.State(), value ? kDownOn : kDownOff);
    QTest::mouseRelease(&button, Qt::LeftButton, {}, inside);
    EXPECT_EQ(button.State(), value ? kOverOn : kOverOff);
    Leave();
  }
}

TEST_F(ngBtnTest, LooksUnpressedInADoubleClickOfAnotherButton) {
  hand.MoveTo(kInside);
  hand.Click(Qt::RightButton);
  QTest::mouseDClick(hand.window.windowHandle(), Qt::RightButton, {}, kInside);
  EXPECT_EQ(button.State(), kOverOff);
  EXPECT_THAT(log, Not(Contains("Click")));
}

TEST_F(ngBtnTest, MovesToItsValueOnlyWhileUp) {
  hand.MoveTo(kInside);
  button.SetValue(true);
  EXPECT_EQ(button.State(), kOverOff);
  hand.Press(Qt::LeftButton);
  button.SetValue(true);
  EXPECT_EQ(button.State(), kDownOff);
  hand.Release(Qt::LeftButton);
  Leave();
  button.SetValue(true);
  EXPECT_EQ(button.State(), kUpOn);
  button.SetValue(false);
  EXPECT_EQ(button.State(), kUpOff);
}

TEST_F(ngBtnTest, TogglesWhenExtendedAndKeepsValueInStep) {
  button.SetExtended(true);
  const auto expect = [this](ngBtnState state, bool value) {
    EXPECT_EQ(button.State(), state);
    EXPECT_EQ(button.Value(), value);
  };
  hand.MoveTo(kInside);
  hand.Click();
  expect(kOverOn, true);
  hand.Click(Qt::RightButton);
  expect(kOverOn, true);
  hand.Press(Qt::LeftButton);
  hand.MoveTo(kOutside);
  hand.Release(Qt::LeftButton);
  expect(kUpOn, true);
  if (button.IsWatching()) Leave();
  hand.MoveTo(kInside);
  hand.Click();
  expect(kOverOff, false);
  hand.Press(Qt::LeftButton);
  Leave();
  hand.Release(Qt::LeftButton);
  expect(kUpOff, false);
}

TEST_F(ngBtnTest, HearsNoMouseWhileDisabledAndNoKeyAtAll) {
  button.setFocus();
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Right}) {
    QTest::keyClick(&button, key);
  }
  EXPECT_TRUE(button.hasFocus());
  button.SetEnabled(false);
  hand.MoveTo(kInside);
  hand.Click();
  EXPECT_EQ(button.State(), kUpOff);
  EXPECT_THAT(Events(), IsEmpty());
}

// ------------------------------------------------------------------------------------- drawing

TEST_F(ngBtnTest, ShowsTheRowOfItsState) {
  const std::vector<QColor> colours = {Qt::red,  Qt::green,   Qt::blue,
                                       Qt::cyan, Qt::magenta, Qt::yellow};
  button.SetPicMouseUpOn(Plain(colours[0]));
  button.SetPicMouseOverOn(Plain(colours[1]));
  button.SetPicMouseDownOn(Plain(colours[2]));
  button.SetPicMouseUpOff(Plain(colours[3]));
  button.SetPicMouseOverOff(Plain(colours[4]));
  button.SetPicMouseDownOff(Plain(colours[5]));
  button.SetForeColorMouseUpOn(1);
  button.SetForeColorMouseOverOn(2);
  button.SetForeColorMouseDownOn(3);
  button.SetForeColorMouseUpOff(4);
  button.SetForeColorMouseOverOff(5);
  button.SetForeColorMouseDownOff(6);
  button.SetFontMouseUpOn(Fonts::Tahoma(11));
  button.SetFontMouseOverOn(Fonts::Tahoma(12));
  button.SetFontMouseDownOn(Fonts::Tahoma(13));
  button.SetFontMouseUpOff(Fonts::Tahoma(14));
  button.SetFontMouseOverOff(Fonts::Tahoma(15));
  button.SetFontMouseDownOff(Fonts::Tahoma(16));
  button.SetHasCaptionOff(false);
  const auto check = [&](ngBtnState state) {
    ASSERT_EQ(button.State(), state);
    const int row = static_cast<int>(state);
    const ngBtnParts parts = button.Parts();
    EXPECT_EQ(Painted(button).pixelColor(1, 1), colours[static_cast<std::size_t>(row - 1)]);
    EXPECT_EQ(parts.ForeColor, row);
    EXPECT_EQ(parts.Font.pixelSize(), 10 + row);
    EXPECT_EQ(parts.captionVisible, row <= 3);
    EXPECT_EQ(parts.lblCaption.height(), Fonts::CaptionSize(parts.Font, "#p").height());
    EXPECT_EQ(parts.lblCaption.left(), 0);
    EXPECT_EQ(parts.lblCaption.width(), 88);
    EXPECT_LE(std::abs(parts.lblCaption.top() + parts.lblCaption.bottom() + 1 - 31), 1);
  };
  for (const int first : {1, 4}) {
    button.SetValue(first == 1);
    check(ngBtnState(first));
    hand.MoveTo(kInside);
    check(ngBtnState(first + 1));
    hand.Press(Qt::LeftButton);
    check(ngBtnState(first + 2));
    hand.Release(Qt::LeftButton);
    Leave();
  }
}

TEST_F(ngBtnTest, LeavesPicturesAtTheirOwnSize) {
  QPalette palette;
  palette.setColor(QPalette::Window, Qt::white);
  hand.window.setPalette(palette);
  button.SetCaption("");
  QPixmap sharp = Plain(Qt::red, {20, 20});
  sharp.setDevicePixelRatio(2.0);
  struct Row {
    QPixmap picture;
    QSize size;
    ColourNumber at9, at15;
  };
  for (const Row& row : std::vector<Row>{{Plain(Qt::red, {15, 15}), {15, 15}, 255, 16777215},
                                         {Plain(Qt::red, {200, 99}), {200, 99}, 255, 255},
                                         {sharp, {10, 10}, 255, 16777215},
                                         {QPixmap(), {0, 0}, 16777215, 16777215}}) {
    button.SetPicMouseUpOff(row.picture);
    EXPECT_EQ(button.Parts().picture.size(), row.size);
    for (const int scale : {1, 2}) {
      QImage image(button.size() * scale, QImage::Format_RGB32);
      image.setDevicePixelRatio(scale);
      image.fill(Qt::white);
      button.render(&image, {}, {}, QWidget::DrawChildren);
      EXPECT_EQ(At(image, 9 * scale, 9 * scale), row.at9);
      EXPECT_EQ(At(image, 15 * scale, 15 * scale), row.at15);
    }
  }
}

TEST_F(ngBtnTest, DrawsItsCaptionAndFocusRectangle) {
  button.SetPicMouseUpOff(Plain(Qt::white));
  const auto count = [this](ColourNumber colour) {
    const QImage image = Painted(button);
    int found = 0;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = 0; y < image.height(); ++y) found += At(image, x, y) == colour ? 1 : 0;
    }
    return found;
  };
  QFont font = Fonts::Tahoma(16);
  font.setStyleStrategy(QFont::NoAntialias);
  button.SetFontMouseUpOff(font);
  button.SetForeColorMouseUpOff(255);
  EXPECT_GT(count(255), 20);
  button.SetEnabled(false);
  EXPECT_EQ(count(255), 0);
  EXPECT_GT(count(Colours::GetSysColor(Colours::kGrayText)), 20);
  button.SetEnabled(true);
  button.SetHasCaptionOff(false);
  EXPECT_EQ(count(255), 0);

  button.setFocus();
  EXPECT_EQ(count(0), 0);
  button.SetHasFocusRect(true);
  button.SetFocusDistance(3);
  EXPECT_EQ(At(Painted(button), 3, 3), 0);
  EXPECT_EQ(At(Painted(button), 4, 3), 16777215);
  EXPECT_EQ(At(Painted(button), 84, 4), 0);
  EXPECT_EQ(count(0), (82 + 25 + 80 + 25 - 2) / 2);
  after.setFocus();
  EXPECT_EQ(count(0), 0);
}

TEST_F(ngBtnTest, TakesItsMousePointerByNumber) {
  for (const auto& [number, shape] :
       {std::pair(15, Qt::SizeAllCursor), {1, Qt::ArrowCursor}, {11, Qt::WaitCursor}}) {
    button.SetMousePointer(number);
    EXPECT_EQ(button.cursor().shape(), shape);
  }
  button.SetMouseIcon(Plain(Qt::red, {16, 16}));
  button.SetMousePointer(99);
  EXPECT_EQ(button.cursor().shape(), Qt::BitmapCursor);
  button.SetMousePointer(0);
  EXPECT_FALSE(button.testAttribute(Qt::WA_SetCursor));
}

// -------------------------------------------------------------------------------- accessibility

TEST_F(ngBtnTest, StandsInTheAccessibilityTreeAsAButton) {
  QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&button);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->role(), QAccessible::PushButton);
  EXPECT_EQ(tree->text(QAccessible::Name), "Ende");
  EXPECT_FALSE(tree->state().pressed || tree->state().focused || tree->state().checkable);
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  button.setFocus();
  EXPECT_TRUE(tree->state().pressed && tree->state().focused);
  hand.Release(Qt::LeftButton);
  Leave();
  Events();
  ASSERT_NE(tree->actionInterface(), nullptr);
  tree->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(Events(), ElementsAre("Click"));
  EXPECT_EQ(button.State(), kUpOff);
  button.SetExtended(true);
  tree->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(button.State(), kUpOn);
  EXPECT_TRUE(tree->state().checkable && tree->state().checked);
  button.SetEnabled(false);
  EXPECT_TRUE(tree->state().disabled);
}

}  // namespace
