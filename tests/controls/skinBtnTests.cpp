#include <QAccessible>
#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "controls/Fonts.h"
#include "controls/Hand.h"
#include "controls/Twips.h"
#include "controls/skinBtn.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr QPoint kInside(70, 60);
constexpr QPoint kOutside(10, 10);

class skinBtnTest : public testing::Test {
 protected:
  skinBtnTest() {
    button.setGeometry(50, 50, 60, 20);
    button.SetCaption("Ok");
    after.move(50, 100);
    after.setFocusPolicy(Qt::StrongFocus);
    Record();
    hand.Open();
    after.setFocus();
    // Showing puts the over look on until the first tick.
    QSignalSpy leave(&button, &skinBtn::MouseLeave);
    if (button.LookOver()) leave.wait();
    log.clear();
  }

  void Record() {
    const auto mouse = [this](const char* name) {
      return [this, name](int pressed, int shift, float x, float y) {
        log.push_back(name + std::string(" ") + std::to_string(pressed) + " " +
                      std::to_string(shift) + " " + std::to_string(std::lround(x)) + "," +
                      std::to_string(std::lround(y)));
      };
    };
    const auto plain = [this](const char* name) {
      return [this, name] { log.emplace_back(name); };
    };
    QObject::connect(&button, &skinBtn::MousMove, mouse("MousMove"));
    QObject::connect(&button, &skinBtn::MousDown, mouse("MousDown"));
    QObject::connect(&button, &skinBtn::MousUp, mouse("MousUp"));
    QObject::connect(&button, &skinBtn::Click, plain("Click"));
    QObject::connect(&button, &skinBtn::MouseEnter, plain("MouseEnter"));
    QObject::connect(&button, &skinBtn::MouseLeave, plain("MouseLeave"));
    const auto key = [this](const char* name) {
      return [this, name](int code, int shift) {
        log.push_back(name + std::string(" ") + std::to_string(code) + " " + std::to_string(shift));
      };
    };
    QObject::connect(&button, &skinBtn::KeyDown, key("KeyDown"));
    QObject::connect(&button, &skinBtn::KeyUp, key("KeyUp"));
    QObject::connect(&button, &skinBtn::KeyPress, [this](std::int16_t character) {
      log.push_back("KeyPress " + std::to_string(character));
    });
  }

  std::vector<std::string> Events() { return std::exchange(log, {}); }

  [[nodiscard]] std::string Look() const {
    return button.LookNormal() ? "normal" : button.LookOver() ? "over" : "pressed";
  }

  void WaitForLeave() {
    QSignalSpy leave(&button, &skinBtn::MouseLeave);
    ASSERT_TRUE(leave.wait());
  }

  Hand hand;
  skinBtn button{&hand.window};
  QWidget after{&hand.window};
  std::vector<std::string> log;
};

ColourNumber At(const QImage& image, int x, int y) {
  return Colours::FromQColor(image.pixelColor(x, y));
}

TEST(skinBtnDefaults, AreThoseOfANewControl) {
  QWidget parent;
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(159, 165, 181));
  parent.setPalette(palette);
  skinBtn button(&parent);
  button.setObjectName("cmdSend");
  EXPECT_EQ(button.Caption(), "cmdSend");
  EXPECT_EQ(button.BackColor(), 11904415);
  EXPECT_EQ(button.BackColorNormal(), 4336663);
  EXPECT_EQ(button.BackColorMouseMove(), 8082219);
  EXPECT_EQ(button.BackColorMouseDown(), 6833700);
  EXPECT_EQ(button.FrameColorNormal(), 4336663);
  EXPECT_EQ(button.FrameColorMouseMove(), 3656959);
  EXPECT_EQ(button.FrameColorMouseDown(), 16777215);
  EXPECT_EQ(button.ForeColorNormal(), 12632256);
  EXPECT_EQ(button.ForeColorMouseMove(), 3656959);
  EXPECT_EQ(button.ForeColorMouseDown(), 3656959);
  EXPECT_EQ(button.ShadowColorMouseDown(), 0);
  EXPECT_EQ(button.FrameWidthMouseOver(), 1);
  EXPECT_EQ(button.BackStyleMouseDown(), 1);
  EXPECT_EQ(button.BorderStyleMouseMove(), 1);
  EXPECT_EQ(button.ShadowDistance(), 2);
  EXPECT_EQ(button.FocusRectDistance(), 2);
  EXPECT_EQ(button.BlinkFrequency(), 75);
  EXPECT_EQ(button.FocusColor(), 16711680);
  EXPECT_TRUE(button.ShadowVisible() && button.Enabled() && button.RaiseClickByKeyEvent() &&
              button.AutoDrawButton());
  EXPECT_FALSE(button.DrawFocusRect());
  button.SetFocusBorderStyle(0);
  button.SetFocusBorderWidth(-3);
  EXPECT_EQ(button.FocusBorderStyle(), 1);
  EXPECT_EQ(button.FocusBorderWidth(), 1);
}

// ------------------------------------------------------------------------------ layout and look

TEST_F(skinBtnTest, LaysItsPartsOutInTwips) {
  EXPECT_EQ(button.Parts().MML, QSizeF(900, 300));
  EXPECT_EQ(button.Parts().back.Box, QRectF(0, 0, 870, 270));
  EXPECT_EQ(button.Parts().shadow.Box, QRectF(30, 30, 870, 270));
  const QSize text = Fonts::CaptionSize(button.FontNormal(), "Ok");
  EXPECT_EQ(button.Parts().btn.Box.size(), QSizeF(text * kTwipsPerPixel));
  EXPECT_EQ(button.Parts().btn.Box.center(), button.Parts().back.Box.center());

  button.SetShadowDistance(-4);
  EXPECT_EQ(button.ShadowDistance(), 0);
  EXPECT_EQ(button.Parts().back.Box, button.Parts().shadow.Box);
  button.SetShadowDistance(1000);
  EXPECT_GT(button.Parts().back.Box.height(), 0);
}

TEST_F(skinBtnTest, HasShapesAPixelLargerWhenNoLookHasABorder) {
  button.SetBorderStyleMouseMove(0);
  button.SetBorderStyleMouseDown(0);
  button.Resize();
  EXPECT_EQ(button.Parts().back.Box.size(), QSizeF(870, 270));
  button.SetBorderStyleNormal(0);
  button.Resize();
  EXPECT_EQ(button.Parts().back.Box.size(), QSizeF(885, 285));

  // What is painted ends at the same pixel all the same.
  button.SetShadowVisible(false);
  button.SetBackColor(255);
  const QImage image = Painted(button);
  EXPECT_EQ(At(image, 57, 17), 4336663);
  EXPECT_EQ(At(image, 58, 17), 255);
  EXPECT_EQ(At(image, 57, 18), 255);
}

TEST_F(skinBtnTest, ReturnsToTheSmallestSize) {
  button.SetWidth(60);
  button.SetHeight(30);
  EXPECT_EQ(button.size(), QSize(8, 8));
  button.setGeometry(10, 20, 3, 40);
  EXPECT_EQ(button.Width(), 120);
  EXPECT_EQ(button.Height(), 600);
  EXPECT_EQ(button.Left(), 150);
  button.SetTop(75);
  EXPECT_EQ(button.pos(), QPoint(10, 5));
  EXPECT_EQ(button.Parts().MML, QSizeF(120, 600));
}

TEST_F(skinBtnTest, AppliesEveryColumnOfItsLooks) {
  button.SetShadowColorMouseMove(101);
  button.SetShadowColorMouseDown(102);
  button.SetFrameWidthMouseOver(2);
  button.SetFrameWidthMouseDown(3);
  button.SetBackStyleMouseMove(0);
  button.SetBorderStyleMouseDown(0);
  const QFont large = Fonts::Tahoma(20);
  button.SetFontMouseDown(large);
  struct Row {
    void (skinBtn::*show)(bool);
    QPointF back;
    ColourNumber shadow, face, frame, text;
    int width, backStyle, borderStyle;
    QFont font;
  };
  const QFont small = Fonts::Tahoma();
  const std::vector<Row> rows = {
      {&skinBtn::MouseMove, {0, 0}, 101, 8082219, 3656959, 3656959, 2, 0, 1, small},
      {&skinBtn::MouseDown, {30, 30}, 102, 6833700, 16777215, 3656959, 3, 1, 0, large},
      {&skinBtn::Normal, {0, 0}, 0, 4336663, 4336663, 12632256, 1, 1, 1, small},
  };
  for (const Row& row : rows) {
    (button.*row.show)(false);
    const skinBtnParts& parts = button.Parts();
    EXPECT_EQ(parts.back.Box, QRectF(row.back, QSizeF(870, 270)));
    EXPECT_EQ(parts.shadow.Box.topLeft(), QPointF(30, 30));
    EXPECT_EQ(parts.shadow.BackColor, row.shadow);
    EXPECT_EQ(parts.shadow.BorderColor, row.shadow);
    EXPECT_EQ(parts.back.BackColor, row.face);
    EXPECT_EQ(parts.back.BorderColor, row.frame);
    EXPECT_EQ(parts.btn.ForeColor, row.text);
    EXPECT_EQ(parts.btn.Font, row.font);
    EXPECT_EQ(parts.btn.Box.center(), parts.back.Box.center());
    for (const auto* shape : {&parts.back, &parts.shadow}) {
      EXPECT_EQ(shape->BorderWidth, row.width);
      EXPECT_EQ(shape->BackStyle, row.backStyle);
      EXPECT_EQ(shape->BorderStyle, row.borderStyle);
    }
  }
}

TEST_F(skinBtnTest, ShowsSettersOfTheNormalLookAtOnceAndKeepsTheOthersWaiting) {
  button.SetBackColorNormal(1);
  button.SetFrameColorNormal(2);
  button.SetForeColorNormal(3);
  button.SetFrameWidthNormal(4);
  button.SetBackColorMouseDown(5);
  EXPECT_EQ(button.Parts().back.BackColor, 1);
  EXPECT_EQ(button.Parts().back.BorderColor, 2);
  EXPECT_EQ(button.Parts().btn.ForeColor, 3);
  EXPECT_EQ(button.Parts().back.BorderWidth, 1);
  button.Normal(false);  // is on
  EXPECT_EQ(button.Parts().back.BorderWidth, 1);
  button.Normal(true);
  EXPECT_EQ(button.Parts().back.BorderWidth, 4);

  button.MouseDown();
  button.SetBackColorNormal(6);
  EXPECT_EQ(button.Parts().back.BackColor, 5);
  button.SetShadowColorNormal(7);
  EXPECT_EQ(Look(), "normal");
  EXPECT_EQ(button.Parts().shadow.BackColor, 7);
}

TEST(skinBtnStart, ShowsAllThatWasSetBeforeItsFirstShowing) {
  Hand hand;
  skinBtn button(&hand.window);
  button.SetAutoDrawButton(false);
  button.SetBackStyleNormal(0);
  button.SetFrameWidthNormal(2);
  hand.Open();
  EXPECT_TRUE(button.LookNormal());
  EXPECT_EQ(button.Parts().back.BackStyle, 0);
  EXPECT_EQ(button.Parts().back.BorderWidth, 2);
}

TEST_F(skinBtnTest, PaintsItsPartsPixelByPixel) {
  button.SetCaption("");
  button.SetBackColor(255);
  button.SetShadowColorNormal(65280);
  button.SetFrameColorNormal(16711680);
  struct Pixel {
    int x, y;
    ColourNumber normal, pressed;
  };
  // The face moves onto the shadow when it is pressed.
  const std::vector<Pixel> pixels = {
      {0, 0, 16711680, 255},      {57, 17, 16711680, 6833700}, {1, 1, 4336663, 255},
      {56, 16, 4336663, 6833700}, {2, 2, 4336663, 16777215},   {59, 19, 65280, 16777215},
      {58, 3, 65280, 6833700},    {58, 1, 255, 255},           {1, 18, 255, 255},
  };
  for (const double scale : {1.0, 2.0}) {
    for (const bool isPressed : {false, true}) {
      isPressed ? button.MouseDown() : button.Normal();
      const QImage image = Painted(button, scale);
      for (const Pixel& pixel : pixels) {
        const int last = static_cast<int>(scale) - 1;
        const QPoint first = QPoint(pixel.x, pixel.y) * scale;
        const ColourNumber expected = isPressed ? pixel.pressed : pixel.normal;
        EXPECT_EQ(At(image, first.x(), first.y()), expected)
            << pixel.x << "," << pixel.y << " at " << scale << (isPressed ? " pressed" : "");
        EXPECT_EQ(At(image, first.x() + last, first.y() + last), expected);
      }
    }
  }
}

TEST_F(skinBtnTest, DrawsFramesOfOneWidthAtAnyScale) {
  button.SetCaption("");
  button.SetShadowVisible(false);
  button.SetShadowDistance(0);
  button.SetFrameColorNormal(16711680);
  // Also where the control begins between two pixels of the screen.
  for (const double scale : {1.25, 1.5, 2.0}) {
    for (int left = 50; left < 54; ++left) {
      button.move(left, 50);
      const QImage image = Painted(hand.window, scale);
      const int row = qRound(60 * scale);
      int frame = 0;
      int face = 0;
      for (int x = qRound(left * scale); x < qRound((left + 60) * scale); ++x) {
        frame += At(image, x, row) == 16711680 ? 1 : 0;
        face += At(image, x, row) == 4336663 ? 1 : 0;
      }
      EXPECT_EQ(frame, 2 * qRound(scale)) << left << " at " << scale;
      EXPECT_EQ(frame + face, qRound((left + 60) * scale) - qRound(left * scale));
    }
  }
}

TEST_F(skinBtnTest, LeavesOutFillShadowAndCornersAsTold) {
  button.SetCaption("");
  button.SetBackColor(255);
  button.SetShadowVisible(false);
  button.SetBackStyleNormal(0);
  button.Normal(true);
  EXPECT_EQ(At(Painted(button), 20, 10), 255);
  EXPECT_EQ(At(Painted(button), 0, 10), 4336663);
  EXPECT_EQ(At(Painted(button), 59, 19), 255);
  button.MouseDown();
  EXPECT_EQ(button.Parts().back.Box.topLeft(), QPointF(30, 30));

  button.SetBackStyleNormal(1);
  button.Normal();
  // The face is 58 x 18, so that a square in it begins at 20. "?" is blended.
  const std::vector<QPoint> points = {{0, 0}, {1, 9}, {20, 0}, {23, 1}, {29, 9}};
  const std::vector<std::string> filled = {"#####", "..###", ".#?##", "...?#", ".####", "...##"};
  for (int shape = 0; shape < 6; ++shape) {
    button.SetShape(shape);
    const QImage image = Painted(button);
    for (std::size_t i = 0; i < points.size(); ++i) {
      const char expected = filled[static_cast<std::size_t>(shape)][i];
      if (expected == '?') continue;
      EXPECT_EQ(At(image, points[i].x(), points[i].y()) == 4336663, expected == '#')
          << "shape " << shape << ", point " << i;
    }
  }
}

TEST_F(skinBtnTest, DrawsTheCaptionOfADisabledControlInGrey) {
  const auto count = [this](ColourNumber colour) {
    const QImage image = Painted(button);
    int found = 0;
    for (int x = 0; x < 60; ++x) {
      for (int y = 0; y < 20; ++y) found += At(image, x, y) == colour ? 1 : 0;
    }
    return found;
  };
  QFont font = Fonts::Tahoma(16);
  font.setStyleStrategy(QFont::NoAntialias);
  button.SetFontNormal(font);
  button.SetForeColorNormal(255);
  EXPECT_GT(count(255), 10);
  button.SetEnabled(false);
  EXPECT_EQ(count(255), 0);
  EXPECT_GT(count(Colours::GetSysColor(Colours::kGrayText)), 10);
  EXPECT_GT(count(Colours::GetSysColor(Colours::kButtonHighlight)), 0);
}

TEST_F(skinBtnTest, DrawsTheFocusRectangleDotByDot) {
  button.SetCaption("");
  button.setFocus();
  EXPECT_EQ(At(Painted(button), 2, 2), 4336663);
  button.SetDrawFocusRect(true);
  const ColourNumber inverted = 4336663 ^ 0xFFFFFF;
  for (const int scale : {1, 2}) {
    const QImage image = Painted(button, scale);
    for (int x = 1; x < 8; ++x) {
      const bool isDot = x >= 2 && x % 2 == 0;
      EXPECT_EQ(At(image, x * scale, 2 * scale), isDot ? inverted : 4336663) << x << " " << scale;
    }
    EXPECT_EQ(At(image, 2 * scale, 4 * scale), inverted);
    EXPECT_EQ(At(image, 2 * scale, 3 * scale), 4336663);
    EXPECT_EQ(At(image, 4 * scale, 4 * scale), 4336663);
    EXPECT_EQ(At(image, 57 * scale, 3 * scale), inverted);
  }
  button.SetFocusRectDistance(4);
  EXPECT_EQ(At(Painted(button), 2, 2), 4336663);
  EXPECT_EQ(At(Painted(button), 4, 4), inverted);
  for (const auto& turnOff :
       std::vector<std::function<void()>>{[this] { button.SetAutoDrawButton(false); },
                                          [this] {
                                            button.SetAutoDrawButton(true);
                                            after.setFocus();
                                          }}) {
    turnOff();
    EXPECT_EQ(At(Painted(button), 4, 4), 4336663);
  }
}

// --------------------------------------------------------------------------------------- mouse

TEST_F(skinBtnTest, ClicksWithTheLeftButton) {
  hand.MoveTo(kInside);
  EXPECT_EQ(Look(), "over");
  EXPECT_TRUE(button.IsWatching());
  hand.Press(Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier);
  EXPECT_EQ(Look(), "pressed");
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(Look(), "over");
  EXPECT_THAT(Events(), ElementsAre("MouseEnter", "MousMove 0 0 300,150", "MousDown 1 5 300,150",
                                    "MousUp 1 0 300,150", "Click"));
  hand.MoveTo(kOutside);
  if (button.IsWatching()) WaitForLeave();
  EXPECT_EQ(Look(), "normal");
  EXPECT_FALSE(button.IsWatching());
  EXPECT_THAT(Events(), ElementsAre("MouseLeave"));
}

TEST_F(skinBtnTest, ClicksOnceForEachPressOfADoubleClick) {
  hand.MoveTo(kInside);
  QSignalSpy click(&button, &skinBtn::Click);
  QTest::mouseDClick(hand.window.windowHandle(), Qt::LeftButton, {}, kInside);
  EXPECT_EQ(click.count(), 2);
}

TEST_F(skinBtnTest, DoesNotClickWithOtherButtons) {
  hand.MoveTo(kInside);
  Events();
  for (const auto& [name, number] : {std::pair(Qt::RightButton, 2), {Qt::MiddleButton, 4}}) {
    hand.Press(name);
    EXPECT_EQ(Look(), "over");
    hand.MoveTo(kInside + QPoint(1, 0));
    EXPECT_EQ(Look(), "over");
    hand.MoveTo(kOutside);
    EXPECT_EQ(Look(), "normal");
    hand.MoveTo(kInside);
    EXPECT_EQ(Look(), "over");
    hand.Release(name);
    EXPECT_EQ(Look(), "over");
    const std::vector<std::string> events = Events();
    const std::string suffix = " " + std::to_string(number) + " 0 300,150";
    EXPECT_EQ(events.front(), "MousDown" + suffix);
    EXPECT_EQ(events.back(), "MousUp" + suffix);
    EXPECT_THAT(events, testing::Not(testing::Contains("Click")));
  }
}

TEST_F(skinBtnTest, ReturnsToPressedAndClicksAfterLeavingWithTheButtonHeld) {
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  hand.MoveTo(kOutside);
  EXPECT_EQ(Look(), "normal");
  if (button.IsWatching()) WaitForLeave();
  hand.MoveTo(kInside);
  EXPECT_EQ(Look(), "pressed");
  Events();
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(Look(), "over");
  EXPECT_THAT(Events(), ElementsAre("MousUp 1 0 300,150", "Click"));
}

TEST_F(skinBtnTest, DoesNotClickWhenReleasedElsewhere) {
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  hand.MoveTo(kOutside);
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(Look(), "normal");
  const std::vector<std::string> events = Events();
  EXPECT_THAT(events, testing::Contains("MousUp 1 0 -600,-600"));
  EXPECT_THAT(events, testing::Not(testing::Contains("Click")));
}

TEST_F(skinBtnTest, AsksForTheWindowUnderTheCursorOnRelease) {
  hand.MoveTo(kInside);
  hand.Press(Qt::LeftButton);
  QWidget cover(&hand.window);
  cover.setGeometry(button.geometry());
  cover.show();
  hand.Release(Qt::LeftButton);
  EXPECT_EQ(Look(), "normal");
}

TEST_F(skinBtnTest, ChangesNothingWithSeveralButtonsHeld) {
  hand.MoveTo(kInside);
  hand.Press(Qt::RightButton);
  hand.Press(Qt::LeftButton);
  EXPECT_EQ(Look(), "pressed");
  hand.MoveTo(kOutside);
  EXPECT_EQ(log.back(), "MousMove 3 0 -600,-600");
  hand.Release(Qt::RightButton);
  hand.Release(Qt::LeftButton);
}

TEST_F(skinBtnTest, NeverChangesItsLookByItselfWithoutAutoDrawButton) {
  button.SetAutoDrawButton(false);
  hand.MoveTo(kInside);
  hand.Click();
  EXPECT_EQ(Look(), "normal");
  EXPECT_THAT(Events(), ElementsAre("MouseEnter", "MousMove 0 0 300,150", "MousDown 1 0 300,150",
                                    "MousUp 1 0 300,150", "Click"));
  button.MouseDown();
  hand.MoveTo(kOutside);
  if (button.IsWatching()) WaitForLeave();
  EXPECT_EQ(Look(), "pressed");
}

TEST_F(skinBtnTest, HearsNothingWhileDisabled) {
  button.SetEnabled(false);
  hand.MoveTo(kInside);
  hand.Click();
  EXPECT_EQ(Look(), "normal");
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(skinBtnTest, SurvivesBeingDestroyedByItsOwnClick) {
  auto* const doomed = new skinBtn(&hand.window);
  doomed->setGeometry(150, 50, 60, 20);
  doomed->show();
  QObject::connect(doomed, &skinBtn::Click, [doomed] { delete doomed; });
  doomed->setFocus();
  QPointer<skinBtn> alive(doomed);
  QTest::keyClick(doomed, Qt::Key_Return);
  EXPECT_FALSE(alive);
}

// ---------------------------------------------------------------------------- keyboard and focus

TEST_F(skinBtnTest, ClicksByTheSpaceKey) {
  button.SetRaiseClickByKeyEvent(false);
  button.setFocus();
  QTest::keyPress(&button, Qt::Key_Space);
  EXPECT_EQ(Look(), "pressed");
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_EQ(Look(), "normal");
  EXPECT_THAT(Events(), ElementsAre("MousDown 1 0 0,0", "KeyPress 32", "Click", "KeyUp 32 0"));
}

TEST_F(skinBtnTest, BlinksForAKeyboardClick) {
  button.SetBlinkFrequency(20);
  button.setFocus();
  QTest::keyPress(&button, Qt::Key_Space);
  QElapsedTimer clock;
  clock.start();
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_GE(clock.elapsed(), 40);
  EXPECT_EQ(Look(), "normal");
  EXPECT_TRUE(button.AutoDrawButton());
  EXPECT_THAT(Events(), ElementsAre("MousDown 1 0 0,0", "KeyPress 32", "KeyDown 13 0", "Click",
                                    "KeyUp 32 0"));
}

TEST_F(skinBtnTest, PaintsThePressedLookBeforeItBlocks) {
  struct PaintedLooks : QObject {
    explicit PaintedLooks(skinBtn& watched) : button(watched) { watched.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
      if (event->type() == QEvent::Paint) looks.push_back(button.LookDown());
      return false;
    }
    skinBtn& button;
    std::vector<bool> looks;
  };
  QApplication::processEvents();
  const PaintedLooks painted(button);
  button.SetBlinkFrequency(1);
  button.BlinkButton();
  EXPECT_THAT(painted.looks, ElementsAre(true, false));
}

TEST_F(skinBtnTest, RaisesTheKeyboardClickWithoutABlinkToo) {
  button.SetBlinkFrequency(0);
  button.setFocus();
  QTest::keyClick(&button, Qt::Key_Space);
  EXPECT_THAT(Events(), ElementsAre("MousDown 1 0 0,0", "KeyPress 32", "KeyDown 13 0", "Click",
                                    "KeyUp 32 0"));
}

TEST_F(skinBtnTest, ClicksByEnterOnlyWithRaiseClickByKeyEvent) {
  button.setFocus();
  QTest::keyClick(&button, Qt::Key_Return);
  EXPECT_THAT(Events(), ElementsAre("Click", "KeyPress 13", "KeyUp 13 0"));
  button.SetRaiseClickByKeyEvent(false);
  QTest::keyClick(&button, Qt::Key_Enter, Qt::ControlModifier);
  EXPECT_THAT(Events(), testing::Not(testing::Contains("Click")));
}

TEST_F(skinBtnTest, IgnoresTheMouseWhileTheSpaceKeyIsHeld) {
  button.SetRaiseClickByKeyEvent(false);
  button.setFocus();
  hand.MoveTo(kInside);
  QTest::keyPress(&button, Qt::Key_Space);
  Events();
  hand.MoveTo(kInside + QPoint(2, 2));
  hand.Click();
  EXPECT_EQ(Look(), "pressed");
  EXPECT_THAT(Events(), IsEmpty());
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_EQ(Look(), "over");
  EXPECT_THAT(Events(), ElementsAre("Click", "KeyUp 32 0"));
}

TEST_F(skinBtnTest, LetsGoOfTheSpaceKeyWhenTheFocusGoes) {
  button.setFocus();
  QTest::keyPress(&button, Qt::Key_Space);
  after.setFocus();
  EXPECT_EQ(Look(), "normal");
  hand.MoveTo(kInside);
  EXPECT_EQ(Look(), "over");
}

TEST_F(skinBtnTest, MovesTheFocusByArrowKeysWithoutRaiseClickByKeyEvent) {
  struct Row {
    Qt::Key key;
    bool clicksByKey;
    bool moves;
  };
  for (const Row& row : std::vector<Row>{{Qt::Key_Right, false, true},
                                         {Qt::Key_Down, false, true},
                                         {Qt::Key_Left, false, true},
                                         {Qt::Key_Up, false, true},
                                         {Qt::Key_Right, true, false},
                                         {Qt::Key_Left, true, false}}) {
    button.SetRaiseClickByKeyEvent(row.clicksByKey);
    button.setFocus();
    QTest::keyClick(&button, row.key);
    EXPECT_EQ(after.hasFocus(), row.moves) << row.key;
  }
}

TEST_F(skinBtnTest, PassesTheFocusOnWhileDisabled) {
  skinBtn second(&hand.window);
  skinBtn third(&hand.window);
  for (skinBtn* const control : {&second, &third}) control->show();
  const std::vector<QWidget*> order = {&after, &second, &button, &third};
  for (std::size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
  second.SetEnabled(false);
  button.SetEnabled(false);
  button.setFocus();
  EXPECT_TRUE(third.hasFocus());
  after.setFocus();
  QTest::keyClick(&after, Qt::Key_Tab);
  EXPECT_TRUE(third.hasFocus());
  after.setFocusPolicy(Qt::NoFocus);
  third.SetEnabled(false);
  button.setFocus();  // nobody takes it: no endless round
  SUCCEED();
}

// -------------------------------------------------------------------------------- accessibility

TEST_F(skinBtnTest, StandsInTheAccessibilityTreeAsAButton) {
  QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&button);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->role(), QAccessible::PushButton);
  EXPECT_EQ(tree->text(QAccessible::Name), "Ok");
  EXPECT_FALSE(tree->state().pressed || tree->state().focused || tree->state().disabled);
  button.setFocus();
  QTest::keyPress(&button, Qt::Key_Space);
  EXPECT_TRUE(tree->state().pressed && tree->state().focused);
  after.setFocus();
  Events();
  ASSERT_NE(tree->actionInterface(), nullptr);
  EXPECT_TRUE(
      tree->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
  tree->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(Events(), ElementsAre("Click"));
  button.SetEnabled(false);
  EXPECT_TRUE(tree->state().disabled);
  tree->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(Events(), IsEmpty());
}

}  // namespace
