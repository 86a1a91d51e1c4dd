#include <QElapsedTimer>
#include <QPointer>
#include <map>

#include "controls/ButtonFixture.h"

namespace {

using skinBtnTest = ButtonFixture<skinBtn>;

constexpr ColourNumber kRed = 255;
constexpr ColourNumber kGreen = 65280;
constexpr ColourNumber kBlue = 16711680;
constexpr ColourNumber kFace = 4336663;  // of the normal look
constexpr ColourNumber kDot = kFace ^ 0xFFFFFF;

// ------------------------------------------------------------------------------ layout and look

TEST_F(skinBtnTest, KeepsItsMeasuresWithinTheirBounds) {
  button.SetShadowDistance(-4);
  EXPECT_EQ(button.ShadowDistance(), 0);
  button.SetShadowDistance(1000);
  EXPECT_GT(button.Parts().back.Box.height(), 15);
  button.SetWidth(60);
  button.SetHeight(30);
  EXPECT_EQ(button.size(), QSize(8, 8)) << "the smallest";
  button.setGeometry(10, 20, 3, 40);
  button.SetTop(75);
  EXPECT_EQ(QRect(button.Left(), button.Top(), button.Width(), button.Height()),
            QRect(150, 75, 120, 600))
      << "in twips";
  button.SetFocusBorderStyle(0);
  button.SetFocusBorderWidth(-3);
  EXPECT_EQ(button.FocusBorderStyle() + button.FocusBorderWidth(), 2) << "neither is less than 1";
}

// Place, colours of fill and frame, width of the frame, styles of fill and frame.
std::string Text(const skinBtnParts::ShapeElement& shape) {
  std::ostringstream text;
  text << shape.Box.x() << "," << shape.Box.y() << " " << shape.BackColor << " "
       << shape.BorderColor << " " << shape.BorderWidth << " " << shape.BackStyle
       << shape.BorderStyle;
  return text.str();
}

TEST_F(skinBtnTest, AppliesEveryColumnOfItsLooks) {
  button.SetShadowColorMouseMove(101);
  button.SetShadowColorMouseDown(102);
  button.SetFrameWidthMouseOver(2);
  button.SetFrameWidthMouseDown(3);
  button.SetBackStyleMouseMove(0);
  button.SetBorderStyleMouseDown(0);
  button.SetFontMouseDown(Fonts::Tahoma(20));
  struct Row {
    void (skinBtn::*show)(bool);
    const char* back;
    const char* shadow;
    ColourNumber caption;
    int font;
  };
  for (const auto& [show, back, shadow, caption, font] : {
           Row{&skinBtn::MouseMove, "0,0 8082219 3656959 2 01", "30,30 101 101 2 01", 3656959, 11},
           Row{&skinBtn::MouseDown, "30,30 6833700 16777215 3 10", "30,30 102 102 3 10", 3656959,
               20},
           Row{&skinBtn::Normal, "0,0 4336663 4336663 1 11", "30,30 0 0 1 11", 12632256, 11},
       }) {
    (button.*show)(false);
    const skinBtnParts& parts = button.Parts();
    EXPECT_EQ(Text(parts.back), back);
    EXPECT_EQ(Text(parts.shadow), shadow);
    EXPECT_EQ(parts.back.Box.size(), QSizeF(870, 270));
    EXPECT_EQ(parts.btn.ForeColor, caption);
    EXPECT_EQ(parts.btn.Font.pixelSize(), font);
    EXPECT_EQ(parts.btn.Box.center(), parts.back.Box.center());
  }
}

TEST(skinBtnStart, ShowsAllThatWasSetBeforeItsFirstShowing) {
  Hand hand;
  skinBtn button(&hand.window);
  button.SetAutoDrawButton(false);
  button.SetBackStyleNormal(0);
  button.SetFrameWidthNormal(2);
  button.setObjectName("cmdSend");
  hand.window.setPalette(QPalette(Qt::red, Qt::red));
  hand.Open();
  EXPECT_TRUE(button.LookNormal());
  EXPECT_EQ(Text(button.Parts().back), "0,0 4336663 4336663 2 01");
  EXPECT_EQ(button.Caption(), "cmdSend");
  EXPECT_EQ(button.BackColor(), kRed) << "the parent's";
}

// The picture of a button of 10 by 8 pixels: a letter a colour, "?" where a pixel has several.
std::vector<std::string> Letters(skinBtn& button, int scale) {
  const std::map<ColourNumber, char> letters = {{kBlue, '#'},   {kFace, '+'}, {kGreen, 's'},
                                                {kRed, '.'},    {kDot, '-'},  {6833700, '*'},
                                                {16777215, 'W'}};
  const QImage image = RenderedAt(button, scale);
  std::vector<std::string> rows(8);
  for (int i = 0; i < 80; ++i) {
    const QRect pixel(QPoint(i % 10, i / 10) * scale, QSize(scale, scale));
    const ColourNumber colour = ColourAt(image, pixel.left(), pixel.top());
    const bool isPlain = colour == ColourAt(image, pixel.right(), pixel.bottom());
    rows[std::size_t(i / 10)] += isPlain && letters.contains(colour) ? letters.at(colour) : '?';
  }
  return rows;
}

TEST_F(skinBtnTest, PaintsItsPartsPixelByPixel) {
  // normal, pressed, without fill and shadow, without border, with the focus
  const std::vector<std::vector<std::string>> rows = {
      {"########..", "..........", "########..", "++++++++..", "++++++++++"},
      {"#++++++#..", "..........", "#......#..", "++++++++..", "+-+-+-+-++"},
      {"#++++++#ss", "..WWWWWWWW", "#......#..", "++++++++..", "++++++++-+"},
      {"#++++++#ss", "..W******W", "#......#..", "++++++++..", "+-++++++++"},
      {"#++++++#ss", "..W******W", "#......#..", "++++++++..", "++++++++-+"},
      {"########ss", "..W******W", "########..", "++++++++..", "+-++++++++"},
      {"..ssssssss", "..W******W", "..........", "..........", "++-+-+-+-+"},
      {"..ssssssss", "..WWWWWWWW", "..........", "..........", "++++++++++"}};
  const auto check = [&](std::size_t column) {
    std::vector<std::string> expected;
    for (const auto& row : rows) expected.push_back(row[column]);
    for (const int scale : {1, 2}) EXPECT_EQ(Letters(button, scale), expected) << "at " << scale;
  };
  button.resize(10, 8);
  button.SetCaption("");
  button.SetBackColor(kRed);
  button.SetShadowColorNormal(kGreen);
  button.SetFrameColorNormal(kBlue);
  check(0);
  button.MouseDown();
  check(1);
  button.SetShadowVisible(false);
  button.SetBackStyleNormal(0);
  button.Normal();
  check(2);
  button.SetBackStyleNormal(1);
  button.SetBorderStyleNormal(0);
  button.SetBorderStyleMouseMove(0);
  button.SetBorderStyleMouseDown(0);
  button.Resize();
  button.Normal(true);
  check(3);
  button.SetShadowDistance(0);
  button.SetFocusRectDistance(1);
  button.SetDrawFocusRect(true);
  EXPECT_EQ(CountOf(kDot, button), 0);
  button.setFocus();
  check(4);
  button.SetAutoDrawButton(false);
  EXPECT_EQ(CountOf(kDot, button), 0);
}

TEST_F(skinBtnTest, DrawsFramesOfOneWidthAtAnyScale) {
  button.SetCaption("");
  button.SetShadowVisible(false);
  button.SetShadowDistance(0);
  button.SetFrameColorNormal(kBlue);
  // Also where the control begins between two pixels of the screen.
  for (const double scale : {1.25, 1.5, 2.0}) {
    for (int left = 50; left < 54; ++left) {
      button.move(left, 50);
      const QImage image = RenderedAt(hand.window, scale);
      const int first = qRound(left * scale);
      const int last = qRound((left + 60) * scale) - 1;
      for (int x = first; x <= last; ++x) {
        const bool isFrame = std::min(x - first, last - x) < qRound(scale);
        ASSERT_EQ(ColourAt(image, x, qRound(60 * scale)), isFrame ? kBlue : kFace)
            << x << " of " << left << " at " << scale;
      }
    }
  }
}

// The face is 58 by 18, so that a square in it begins at 20. "?" is blended.
TEST_F(skinBtnTest, HasSixShapes) {
  button.SetCaption("");
  button.SetShadowVisible(false);
  const std::vector<QPoint> points = {{0, 0}, {1, 9}, {20, 0}, {23, 1}, {29, 9}};
  int shape = 0;
  for (const char* const filled : {"#####", "..###", ".#?##", "...?#", ".####", "...##"}) {
    button.SetShape(shape++);
    const QImage image = RenderedAt(button, 1);
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (filled[i] == '?') continue;
      EXPECT_EQ(ColourAt(image, points[i].x(), points[i].y()) == kFace, filled[i] == '#')
          << filled << ", point " << i;
    }
  }
}

// --------------------------------------------------------------------------------------- mouse

// The cursor itself stays on the control, so that the timer doesn't change the look.
TEST_F(skinBtnTest, LooksAsTheHeldButtonsAndThePlaceTell) {
  struct Row {
    Qt::MouseButtons held;
    QPointF place;
    const char* look;
  };
  hand.MoveTo(kInside);
  for (const auto& [held, place, look] : {
           Row{Qt::LeftButton, {5, 5}, "pressed"},
           Row{Qt::LeftButton, {-1, 5}, "normal"},
           Row{Qt::LeftButton, {60, 20}, "pressed"},
           Row{Qt::LeftButton, {5, 21}, "normal"},
           Row{Qt::NoButton, {5, 5}, "over"},
           Row{Qt::RightButton, {61, 5}, "normal"},
           Row{Qt::RightButton, {5, 5}, "over"},
           Row{Qt::MiddleButton, {5, -1}, "normal"},
           Row{Qt::MiddleButton, {5, 5}, "over"},
           Row{Qt::LeftButton | Qt::RightButton, {-1, 5}, "over"},
       }) {
    QMouseEvent move(QEvent::MouseMove, place, QCursor::pos(), Qt::NoButton, held, {});
    QCoreApplication::sendEvent(&button, &move);
    EXPECT_EQ(Look(), look) << place.x() << "," << place.y() << " with " << held.toInt();
  }
}

TEST_F(skinBtnTest, SurvivesBeingDestroyedByItsOwnClick) {
  const QPointer<skinBtn> doomed(new skinBtn(&hand.window));
  doomed->show();
  QObject::connect(doomed, &skinBtn::Click, [doomed] { delete doomed; });
  doomed->setFocus();
  QTest::keyClick(doomed, Qt::Key_Return);
  EXPECT_FALSE(doomed);
}

// ---------------------------------------------------------------------------- keyboard and focus

TEST_F(skinBtnTest, ClicksByKeys) {
  struct Row {
    bool clicksByKey;
    std::int16_t blink;
    Qt::Key key;
    const char* look;
    const char* heard;
  };
  button.setFocus();
  for (const auto& [clicksByKey, blink, key, look, expected] : {
           Row{false, 0, Qt::Key_Space, "pressed", "Down 1 0 0 0; KeyPress 32; Click; KeyUp 32 0"},
           Row{true, 60, Qt::Key_Space, "pressed",
               "Down 1 0 0 0; KeyPress 32; KeyDown 13 0; Click; KeyUp 32 0"},
           Row{true, 0, Qt::Key_Space, "pressed",
               "Down 1 0 0 0; KeyPress 32; KeyDown 13 0; Click; KeyUp 32 0"},
           Row{true, 0, Qt::Key_Return, "normal", "Click; KeyPress 13; KeyUp 13 0"},
           Row{false, 0, Qt::Key_Enter, "normal", "KeyPress 13; KeyUp 13 0"},
       }) {
    button.SetRaiseClickByKeyEvent(clicksByKey);
    button.SetBlinkFrequency(blink);
    QTest::keyPress(&button, key);
    EXPECT_EQ(Look(), look);
    QElapsedTimer clock;
    clock.start();
    QTest::keyRelease(&button, key);
    EXPECT_GE(clock.elapsed(), 2 * blink);
    EXPECT_EQ(Look(), "normal");
    EXPECT_TRUE(button.AutoDrawButton());
    EXPECT_EQ(Heard(), expected);
  }
}

TEST(skinBtnStart, PaintsThePressedLookBeforeItBlocks) {
  struct Button : skinBtn {
    using skinBtn::skinBtn;
    void paintEvent(QPaintEvent* /*event*/) override { painted += LookDown() ? "down " : "up "; }
    std::string painted;
  };
  Hand hand;
  Button button(&hand.window);
  hand.Open();
  button.painted.clear();
  button.SetBlinkFrequency(1);
  button.BlinkButton();
  EXPECT_EQ(button.painted, "down up ");
}

TEST_F(skinBtnTest, IgnoresTheMouseWhileTheSpaceKeyIsHeld) {
  button.SetRaiseClickByKeyEvent(false);
  button.setFocus();
  Walk({{"come", "over", ".*"}});
  QTest::keyPress(&button, Qt::Key_Space);
  Heard();
  hand.MoveTo(kInside + QPoint(2, 2));
  hand.Click();
  EXPECT_EQ(Look(), "pressed");
  EXPECT_EQ(Heard(), "");
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_EQ(Look(), "over");
  EXPECT_EQ(Heard(), "Click; KeyUp 32 0");

  Leave();
  QTest::keyPress(&button, Qt::Key_Space);
  after.setFocus();  // lets go of the key
  EXPECT_EQ(Look(), "normal");
  Walk({{"come", "over", ".*"}});
}

TEST_F(skinBtnTest, MovesTheFocusByArrowKeysWithoutRaiseClickByKeyEvent) {
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up}) {
    for (const bool clicksByKey : {false, true}) {
      button.SetRaiseClickByKeyEvent(clicksByKey);
      button.setFocus();
      QTest::keyClick(&button, key);
      EXPECT_EQ(after.hasFocus(), !clicksByKey) << key;
    }
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
}

}  // namespace
