#pragma once

#include <cmath>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "controls/Fonts.h"
#include "controls/Hand.h"
#include "controls/RenderedAt.h"
#include "controls/Twips.h"
#include "controls/ngBtn.h"
#include "controls/skinBtn.h"

/// A button in a window, another widget for the focus, a hand, and what the button's signals said:
/// name and numbers, of the mouse the button, the keys and the place in pixels of the control.
template <typename Button>
class ButtonFixture : public testing::Test {
 protected:
  static constexpr bool kIsSkinBtn = std::is_same_v<Button, skinBtn>;
  static constexpr QPoint kInside{70, 55};  // 20,5 of the control
  static constexpr QPoint kOutside{10, 10};

  ButtonFixture() {
    button.setGeometry({QPoint(50, 50), kIsSkinBtn ? QSize(60, 20) : QSize(88, 31)});
    button.SetCaption("Ok");
    after.move(50, 100);
    after.setFocusPolicy(Qt::StrongFocus);
    Listen();
    hand.Open();
    after.setFocus();
    Leave();  // showing may put the over look on until the first tick
    heard.clear();
  }

  template <typename... Parts>
  void Hear(const char* name, const Parts&... parts) {
    std::ostringstream text;
    text << (heard.empty() ? "" : "; ") << name;
    ((text << ' ' << parts), ...);
    heard += text.str();
  }

  void Listen() {
    const auto plain = [this](const char* name, auto signal) {
      QObject::connect(&button, signal,
                       [this, name](auto... numbers) { this->Hear(name, numbers...); });
    };
    const auto mouse = [this](const char* name, auto signal) {
      QObject::connect(&button, signal, [this, name](int pressed, int shift, float x, float y) {
        const float unit = kIsSkinBtn ? kTwipsPerPixel : 1;
        Hear(name, pressed, shift, std::lround(x / unit), std::lround(y / unit));
      });
    };
    if constexpr (kIsSkinBtn) {
      mouse("Down", &skinBtn::MousDown);
      mouse("Move", &skinBtn::MousMove);
      mouse("Up", &skinBtn::MousUp);
      plain("KeyDown", &skinBtn::KeyDown);
      plain("KeyPress", &skinBtn::KeyPress);
      plain("KeyUp", &skinBtn::KeyUp);
    } else {
      mouse("Down", &ngBtn::MouseDown);
      mouse("Move", &ngBtn::MouseMove);
      mouse("Up", &ngBtn::MouseUp);
    }
    plain("Click", &Button::Click);
    plain("Enter", &Button::MouseEnter);
    plain("Leave", &Button::MouseLeave);
  }

  std::string Heard() { return std::exchange(heard, {}); }

  [[nodiscard]] std::string Look() const {
    if constexpr (kIsSkinBtn) {
      return button.LookNormal() ? "normal" : button.LookOver() ? "over" : "pressed";
    } else {
      const auto state = static_cast<std::size_t>(button.State());
      return std::vector<std::string>{"pressed", "normal", "over"}[state % 3];
    }
  }

  // Moves the mouse out and waits until the control has noticed.
  void Leave() {
    hand.MoveTo(kOutside);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !button.IsWatching(); }));
  }

  void Do(const std::string& act) {
    const Qt::MouseButton which = act.ends_with("right")    ? Qt::RightButton
                                  : act.ends_with("middle") ? Qt::MiddleButton
                                                            : Qt::LeftButton;
    if (act == "come") hand.MoveTo(kInside);
    if (act == "move on") hand.MoveTo(kInside + QPoint(1, 0));
    if (act == "slip out") hand.MoveTo(kOutside);
    if (act == "leave") Leave();
    if (act == "double-click") hand.DoubleClick();
    if (act.starts_with("press")) hand.Press(which);
    if (act.starts_with("release")) hand.Release(which);
  }

  // An act of the hand, the look after it, and what is heard of it. Both are regular expressions:
  // with a button held, the timer that watches for the cursor may tick before the control hears of
  // the move that leaves it, or after.
  struct Step {
    const char* act;
    const char* look;
    std::string expected;
  };

  void Walk(const std::vector<Step>& steps) {
    for (const auto& [act, look, expected] : steps) {
      SCOPED_TRACE(act);
      Do(act);
      EXPECT_THAT(Look(), testing::MatchesRegex(look));
      EXPECT_THAT(Heard(), testing::MatchesRegex(expected));
      if constexpr (!kIsSkinBtn) {
        EXPECT_EQ(button.State() <= ngBtnState::kDownOn, button.Value());
      }
    }
  }

  Hand hand;
  Button button{&hand.window};
  QWidget after{&hand.window};
  std::string heard;
};
