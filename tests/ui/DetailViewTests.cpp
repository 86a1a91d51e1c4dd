#include <QAccessible>
#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <optional>

#include <gmock/gmock.h>

#include "controls/Hand.h"
#include "controls/RenderedAt.h"
#include "controls/skinBtn.h"
#include "pack/clsIMGtool.h"
#include "platform/FileSystem.h"
#include "support/PackFile.h"
#include "support/TempFolder.h"
#include "ui/DetailView.h"
#include "ui/PictureSurface.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QColor kBackground(0xB3, 0xB8, 0xC5);
const std::string kSixtyThousand("\x60\xEA\0\0", 4);

std::string Encoded(const QImage& image, const char* format) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&bytes, format));
  return bytes.data().toStdString();
}

std::string Plain(const char* format, const QColor& colour) {
  QImage image(40, 40, QImage::Format_RGB32);
  image.fill(colour);
  return Encoded(image, format);
}

/// A GIF of two frames of one pixel, the first green, the second red.
std::string TwoFrames() {
  return QByteArray::fromHex(
             "474946383961 01000100 800000 00ff00 ff0000"  // colours: green, red
             "2c 00000000 01000100 00 02 024401 00"
             "2c 00000000 01000100 00 02 024c01 00 3b")
      .toStdString();
}

/// A green bitmap whose header claims another size: a negative height stands for lines from top to
/// bottom.
std::string Bitmap(const std::string& width, const std::string& height) {
  return Plain("BMP", Qt::green).replace(18, 8, width + height);
}

class DetailViewTest : public testing::Test {
 protected:
  DetailViewTest() {
    folder.MakeFolder("temp");
    WriteArchive(folder, "pack.kvpk",
                 {{"green.png", Plain("PNG", Qt::green)},
                  {"green.jpg", Plain("JPEG", Qt::green)},
                  {"green.bmp", Plain("BMP", Qt::green)},
                  {"top_down.bmp", Bitmap(std::string("\x28\0\0\0", 4), "\xD8\xFF\xFF\xFF")},
                  {"green.gif", TwoFrames()},
                  {"named_wrong.bmp", Plain("PNG", Qt::green)},
                  {"blue.png", Plain("PNG", Qt::blue)},
                  {"text.png", "no picture at all"},
                  {"vector.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>"},
                  {"huge.bmp", Bitmap(kSixtyThousand, kSixtyThousand)},
                  {"..\\out.png", Plain("PNG", Qt::red)}});
    pack.Load(folder.Dos("pack.kvpk"));
    hand.window.resize(675, 591);
    view.emplace(&hand.window, files, pack, temp, [this] { ++clicks; });
    hand.Open();
  }

  [[nodiscard]] QColor Middle() const {
    const QImage image = RenderedAt(*view->picDescPic, 1);
    return image.pixelColor(image.rect().center());
  }
  /// Roughly, as JPEG changes colours.
  [[nodiscard]] bool IsGreen() const {
    const QColor colour = Middle();
    return colour.red() < 8 && colour.green() > 247 && colour.blue() < 8;
  }
  void ClickOn(const QWidget& widget, Qt::MouseButton button = Qt::LeftButton) {
    hand.MoveTo(widget.geometry().center());
    hand.Click(button);
  }

  TempFolder folder;
  FileSystem files;
  clsIMGtool pack{files};
  Hand hand;
  int clicks = 0;
  std::string temp = folder.Dos("temp");
  std::optional<DetailView> view;
};

TEST_F(DetailViewTest, ShowsPicturesOfEachFormatAndLeavesNoFile) {
  for (const char* const name :
       {"green.png", "green.jpg", "green.bmp", "top_down.bmp", "green.gif", "named_wrong.bmp"}) {
    view->SetPicture("blue.png");
    ASSERT_EQ(Middle(), QColor(Qt::blue));
    view->SetPicture(name);
    EXPECT_TRUE(IsGreen()) << name << ": " << Middle().name().toStdString();
    EXPECT_EQ(view->Tag(), name);
    EXPECT_THAT(folder.List("temp"), IsEmpty());
  }
}

TEST_F(DetailViewTest, KeepsThePictureWhenAnotherCannotBeShown) {
  folder.Write("out.png", Plain("PNG", Qt::red));
  view->SetPicture("blue.png");
  for (const char* const name : {"missing.png", "BLUE.PNG", "..\\out.png", "..", "C:\\out.png",
                                 "text.png", "vector.svg", "huge.bmp"}) {
    view->SetPicture(name);
    EXPECT_EQ(view->Tag(), "blue.png") << name;
    EXPECT_EQ(Middle(), QColor(Qt::blue)) << name;
  }
  EXPECT_THAT(folder.List("temp"), ElementsAre("huge.bmp", "text.png", "vector.svg"));
  EXPECT_EQ(folder.Read("out.png"), Plain("PNG", Qt::red));
}

TEST_F(DetailViewTest, ReadsThePackOnlyForAnotherName) {
  view->SetPicture("");
  const QImage builtIn = RenderedAt(*view->picDescPic, 1);
  EXPECT_EQ(builtIn.pixelColor(0, 0), kBackground);
  view->SetPicture("green.png");
  files.Faults().FailAt(0);
  view->SetPicture("green.png");
  EXPECT_NE(RenderedAt(*view->picDescPic, 1), builtIn);
  view->SetPicture("");
  EXPECT_EQ(RenderedAt(*view->picDescPic, 1), builtIn);
  EXPECT_EQ(view->Tag(), "");
  EXPECT_EQ(files.Faults().Count(), 0);
  view->SetPicture("green.png");
  EXPECT_GT(files.Faults().Count(), 0);
}

TEST_F(DetailViewTest, KeepsTheDetailThatAFineScreenCanShow) {
  QImage stripes(800, 400, QImage::Format_RGB32);
  stripes.fill(Qt::white);
  QPainter painter(&stripes);
  for (int x = 1; x < stripes.width(); x += 2) painter.fillRect(x, 0, 1, 400, Qt::black);
  painter.end();
  WriteArchive(folder, "pack.kvpk", {{"stripes.png", Encoded(stripes, "PNG")}});
  pack.Load(folder.Dos("pack.kvpk"));
  view->picDescPic->resize(400, 200);
  view->SetPicture("stripes.png");
  const QImage fine = RenderedAt(*view->picDescPic, 2);
  EXPECT_EQ(fine.pixelColor(400, 200), QColor(Qt::white));
  EXPECT_EQ(fine.pixelColor(401, 200), QColor(Qt::black));
}

TEST_F(DetailViewTest, SwitchesTheViewByMouseKeyboardAndScreenReader) {
  view->SetPicture("green.png");
  view->SetDescription("Text");
  view->cmdPicture_MousDown();
  const auto key = [](skinBtn* tab, Qt::Key which) {
    tab->setFocus();
    QTest::keyClick(tab, which);
  };
  const std::vector<std::function<void(skinBtn*)>> ways = {
      [&](skinBtn* tab) { ClickOn(*tab); }, [&](skinBtn* tab) { ClickOn(*tab, Qt::RightButton); },
      [&](skinBtn* tab) { key(tab, Qt::Key_Space); },
      [&](skinBtn* tab) { key(tab, Qt::Key_Return); },
      [](skinBtn* tab) {
        QAccessible::queryAccessibleInterface(tab)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
      }};
  for (std::size_t way = 0; way < ways.size(); ++way) {
    for (const bool toText : {true, false}) {
      SCOPED_TRACE(way);
      skinBtn* const shown = toText ? view->cmdDescription : view->cmdPicture;
      skinBtn* const other = toText ? view->cmdPicture : view->cmdDescription;
      clicks = 0;
      ways[way](shown);
      EXPECT_EQ(clicks, 1);
      EXPECT_EQ(view->txtDescription->isVisible(), toText);
      EXPECT_TRUE(shown->LookDown() && !shown->AutoDrawButton());
      EXPECT_TRUE(!other->LookDown() && other->AutoDrawButton());
      const bool byKeyboard = shown->hasFocus() && way >= 2;
      EXPECT_EQ(shown->FontMouseDown().underline(), byKeyboard);
    }
  }
  EXPECT_EQ(view->txtDescription->toPlainText(), "Text");
  EXPECT_EQ(view->Tag(), "green.png");
}

TEST_F(DetailViewTest, ShowsTheTextToReadAndToCopy) {
  QPlainTextEdit& box = *view->txtDescription;
  QScrollBar& bar = *box.verticalScrollBar();
  view->cmdDescription_MousDown();
  view->SetDescription("F\xFCr K\xF6nner\r\n\r\n\x84Los!\x93 \x80 5\r\n");
  EXPECT_EQ(box.toPlainText(), QString("Für Könner\n\n„Los!“ € 5\n"));
  EXPECT_TRUE(bar.isVisible());
  box.setFocus();
  QTest::keyClicks(&box, "x");
  QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString("Für Könner\n\n„Los!“ € 5\n"));

  std::string lines;
  for (int i = 0; i < 200; ++i) lines += "Zeile\r\n";
  view->SetDescription(lines);
  bar.setValue(100);
  view->SetDescription(lines);
  EXPECT_EQ(bar.value(), 100) << "the same text keeps its place";
  view->SetDescription(lines + "Ende");
  EXPECT_EQ(bar.value(), 0);
}

}  // namespace
