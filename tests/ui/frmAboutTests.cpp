#include <QPointer>
#include <QTest>
#include <QTextEdit>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "controls/skinBtn.h"
#include "core/BuildConfig.h"
#include "support/RecordingHost.h"
#include "ui/frmAbout.h"

namespace {

class About : public testing::Test {
 protected:
  void SetUp() override {
    owner_.resize(700, 600);
    owner_.show();
    about_ = new frmAbout(&owner_, shell_);
    about_->show();
    about_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(about_));
  }
  void Press(Qt::MouseButton button, const QPoint& place) {
    QTest::mouseClick(about_->windowHandle(), button, {}, place);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  RecordingOpener shell_;
  QWidget owner_;
  QPointer<frmAbout> about_;
};

TEST_F(About, IsAPlainWindowOfItsOwnHeight) {
  EXPECT_EQ(about_->windowTitle(), "Über KVPKI");
  EXPECT_EQ(about_->size(), QSize(620, 435));
  EXPECT_TRUE(about_->windowFlags() & Qt::FramelessWindowHint);
  EXPECT_EQ(about_->windowModality(), Qt::NonModal);
}

TEST_F(About, AButtonOpensItsAddress) {
  const std::vector<std::pair<skinBtn*, std::string_view>> buttons = {
      {about_->cmdCredit1, BuildConfig::kAboutUrl1},
      {about_->cmdCredit2, BuildConfig::kAboutUrl2},
      {about_->cmdCredit3, BuildConfig::kAboutUrl3}};
  for (const auto& [button, address] : buttons) {
    shell_.Opened.clear();
    Press(Qt::LeftButton, button->mapTo(about_, button->rect().center()));
    ASSERT_NE(about_, nullptr);
    EXPECT_EQ(shell_.Opened, (decltype(shell_.Opened){{std::string(address), ""}}));
  }
}

TEST_F(About, OnlyALeftPressOnTheFormItselfClosesIt) {
  const auto middle = [this](const QWidget* part) {
    return part->mapTo(about_, part->rect().center());
  };
  Press(Qt::RightButton, {5, 5});
  Press(Qt::LeftButton, {20, 190});  // the upper field
  Press(Qt::LeftButton, middle(about_->lblKvpk));
  Press(Qt::LeftButton, middle(about_->lblProjektleitung));
  Press(Qt::LeftButton, middle(about_->txtRecht));
  ASSERT_NE(about_, nullptr);
  Press(Qt::LeftButton, {5, 5});
  EXPECT_EQ(about_, nullptr);
}

TEST_F(About, GoesWithTheFocus) {
  owner_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&owner_));
  EXPECT_TRUE(QTest::qWaitFor([this] { return about_ == nullptr; }));
}

TEST_F(About, GoesWithEscape) {
  QTest::keyClick(about_->windowHandle(), Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([this] { return about_ == nullptr; }));
}

}  // namespace
