#include <QPointer>
#include <QTest>
#include <QTextEdit>
#include <cmath>
#include <string>
#include <utility>

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
  QPoint Middle(const QWidget* part) { return part->mapTo(about_, part->rect().center()); }

  RecordingOpener shell_;
  QWidget owner_;
  QPointer<frmAbout> about_;
};

TEST_F(About, AButtonOpensItsAddress) {
  EXPECT_EQ(about_->size(), QSize(620, 435));
  const auto luminance = [&](QPalette::ColorRole role) {
    const auto part = [](double value) { return std::pow((value + 0.055) / 1.055, 2.4); };
    const QColor of = about_->txtRecht->palette().color(role);
    return 0.21 * part(of.redF()) + 0.72 * part(of.greenF()) + 0.07 * part(of.blueF()) + 0.05;
  };
  EXPECT_GE(luminance(QPalette::Text) / luminance(QPalette::Base), 4.5);
  for (const auto& [button, address] : {std::pair(about_->cmdCredit1, BuildConfig::kAboutUrl1),
                                        {about_->cmdCredit2, BuildConfig::kAboutUrl2},
                                        {about_->cmdCredit3, BuildConfig::kAboutUrl3}}) {
    Press(Qt::LeftButton, Middle(button));
    ASSERT_NE(about_, nullptr);
    EXPECT_EQ(shell_.Opened.back(), std::pair(std::string(address), std::string()));
  }
  EXPECT_EQ(shell_.Opened.size(), 3U);
}

TEST_F(About, OnlyALeftPressOnTheFormItselfClosesIt) {
  Press(Qt::RightButton, {5, 5});
  Press(Qt::LeftButton, {20, 190});  // the upper field
  Press(Qt::LeftButton, Middle(about_->lblKvpk));
  Press(Qt::LeftButton, Middle(about_->lblProjektleitung));
  Press(Qt::LeftButton, Middle(about_->txtRecht));
  ASSERT_NE(about_, nullptr);
  Press(Qt::LeftButton, {5, 5});
  EXPECT_EQ(about_, nullptr);
}

TEST_F(About, GoesWithTheFocusAndWithEscape) {
  owner_.activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([this] { return about_ == nullptr; }));
  SetUp();
  QTest::keyClick(about_->windowHandle(), Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([this] { return about_ == nullptr; }));
}

}  // namespace
