#include <QBuffer>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <cstddef>
#include <ctime>

#include <gmock/gmock.h>

#include "controls/RenderedAt.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/RecordingHost.h"
#include "support/TempFolder.h"
#include "ui/HtmlStrip.h"

namespace {

QByteArray RedPicture(const QSize& size = {30, 30}) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::red);
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  image.save(&bytes, "PNG");
  return bytes.data();
}

std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

// What the processor worked for this program, however busy it was with others.
double SecondsOfWorkSince(std::clock_t start) {
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

class HtmlStripTest : public testing::Test {
 protected:
  HtmlStripTest() {
    strip.resize(400, 300);
    strip.show();
  }

  void Show(const std::string& page) {
    folder.Write("html.htm", page);
    strip.Navigate(folder.Dos("html.htm"));
  }
  [[nodiscard]] std::ptrdiff_t RedPixels(qreal ratio) {
    const QImage image = RenderedAt(strip, ratio).convertToFormat(QImage::Format_RGB32);
    const auto* const pixels = reinterpret_cast<const QRgb*>(image.constBits());
    constexpr auto kPixel = static_cast<qsizetype>(sizeof(QRgb));
    return std::count(pixels, pixels + image.sizeInBytes() / kPixel, qRgb(255, 0, 0));
  }
  /// Clicks where the page has a link.
  void ClickLink() {
    for (int x = 0; x < 200; x += 4) {
      if (strip.anchorAt({x, 20}).isEmpty()) continue;
      QTest::mouseClick(strip.viewport(), Qt::LeftButton, {}, {x, 20});
      return;
    }
    ADD_FAILURE() << "no link";
  }

  TempFolder folder;
  FileSystem files;
  RecordingOpener shell;
  HtmlStrip strip{nullptr, files, shell};
};

TEST_F(HtmlStripTest, LoadsNothingThatThePageNames) {
  folder.Write("red.png", RedPicture().toStdString());
  folder.Write("red@2x.png", RedPicture({60, 60}).toStdString());
  folder.Write("red.css", "body, p, td { background-color: #ff0000; color: #ff0000 }");
  folder.Write("red.htm", "<body bgcolor=red>x");
  const std::string native = folder.Native().string();
  const std::string places[] = {
      "",
      native + "/",
      "file://" + native + "/",
      "file:",
      "\\\\" + native + "/",
      "//localhost" + native + "/",
      "file:///" + native + "/../" + folder.Native().filename().string() + "/"};
  const char* const ways[] = {
      R"~(<img src="$png">)~",
      R"~(<img src="$png" width=30 height=30>)~",
      R"~(<body background="$png">text)~",
      R"~(<table background="$png" width=50 height=50><tr><td>text</table>)~",
      R"~(<table><tr><td background="$png">text</table>)~",
      R"~(<div style="background-image: url($png)">text</div>)~",
      R"~(<p style="background: url('$png')">text</p>)~",
      R"~(<ul style="list-style-image: url($png)"><li>text</ul>)~",
      R"~(<link rel="stylesheet" href="$css"><p>text)~",
      R"~(<style>@import url("$css");</style><p>text)~",
      R"~(<style>@import "$css";</style><p>text)~",
      R"~(<object data="$png">text</object><embed src="$png"><iframe src="$htm"></iframe>)~",
      R"~(<input type=image src="$png"><script src="$htm"></script>)~",
      R"~(<base href="file:///"><img src="$png">)~",
  };
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Native());
  for (const std::string& place : places) {
    for (const char* const way : ways) {
      const std::string page = Text::Replace(way, "$", place + "red.");
      Show(page);
      EXPECT_EQ(RedPixels(1) + RedPixels(2), 0) << page;
    }
  }
  std::filesystem::current_path(before);
}

TEST_F(HtmlStripTest, ShowsThePicturesThatThePageHolds) {
  const std::string red = "data:image/png;base64," + RedPicture().toBase64().toStdString();
  for (const auto& [page, pixels] : {
           std::pair<std::string, int>{"<body style='margin:0'><img src='" + red + "'>", 900},
           {"<body><img width=10 height=20 src='" + red + "'>", 200},
           {"<body><img width=60 src='" + red + "'>", 3600},
       }) {
    Show(page);
    EXPECT_EQ(RedPixels(1), pixels) << page;
    EXPECT_EQ(RedPixels(2), pixels * 4) << page;
  }
  Show("<body background='" + red + "'>text");
  EXPECT_GT(RedPixels(1), 400 * 300 / 2);
}

TEST_F(HtmlStripTest, OpensWebAddressesOnlyAndKeepsThePage) {
  folder.Write("other.htm", "another page");
  const std::string other = folder.At("other.htm").string();
  for (const auto& [address, opened] : {
           std::pair<std::string, std::string>{"http://mods.example/a?b=1&amp;c=%20d#e",
                                               "http://mods.example/a?b=1&c=%20d#e"},
           {"HTTPS://Mods.Example/", "https://mods.example/"},
           {"http://m\xFCller.example/\xFC", "http://xn--mller-kva.example/%C3%BC"},
           {"http:///etc/passwd", ""},
           {"http:other.htm", ""},
           {"other.htm", ""},
           {"/other.htm", ""},
           {"file://" + other, ""},
           {other, ""},
           {R"(\\server\share\x.exe)", ""},
           {"//server/share", ""},
           {"javascript:alert(1)", ""},
           {"mailto:a@b.example", ""},
           {"data:text/html,x", ""},
           {"-http://x.example", ""},
           {"#unten", ""},
       }) {
    Show("<a href=\"" + address + "\">Verweis</a>" + Repeated("<p>x", 60) + "<a name=unten>y</a>");
    shell.Opened = {{}};
    ClickLink();
    EXPECT_EQ(shell.Opened.back().first, opened) << address;
    EXPECT_TRUE(strip.toPlainText().startsWith("Verweis")) << address;
    EXPECT_EQ(strip.verticalScrollBar()->value() > 0, address == "#unten") << address;
  }
}

TEST_F(HtmlStripTest, ReadsWindowsTextUnlessThePageSaysUtf8) {
  for (const auto& [page, text] : {
           std::pair<std::string, const char*>{"<p>\x84K\xF6nner\x93 \x80", "„Könner“ €"},
           {"<meta http-equiv=Content-Type content=\"text/html; charset=utf-8\"><p>K\xC3\xB6nner",
            "Könner"},
           {"<meta charset='UTF-8'><p>K\xF6nner", "Könner"},  // which isn't true
           {"\xEF\xBB\xBF<p>K\xC3\xB6nner", "Könner"},
           {"<meta charset=iso-8859-1><p>K\xF6nner", "Könner"},
       }) {
    Show(page);
    EXPECT_EQ(strip.toPlainText(), QString(text)) << page;
  }
}

TEST_F(HtmlStripTest, StaysEmptyAndQuickWithPagesThatNobodyCouldRead) {
  const auto picture = [](const std::string& size) { return "<img src='data:,a' " + size + ">"; };
  for (const std::string& page : {
           std::string(HtmlStrip::kLargestPage + 1, 'x'),
           Repeated("<table><tr><td>", 40) + "x",
           Repeated("<table><tr><td>", 650) + "x",
           Repeated("<ul><li>", 7000),
           "<table>" + Repeated("<tr><td colspan=20000 rowspan='19999'>x", 300),
           "<table><tr>" + Repeated("<td>", 500) + Repeated("<tr><td>x", 500),
           "<table><tr>" + Repeated("<td>", 150) + Repeated("<tr><td>x", 150),
           std::string("<table><td colspan=+20000>x"),
           std::string("<table><td colspan=\"&#50;0000\">x"),
           std::string("<table><td colspan=2&#48;&#x30;&#48;0>x"),
           std::string("<table><td c&#111;lspan=20000>x"),
           std::string("<table><td 'colspan'=20000>x"),
           std::string("<table><td colspan=00000020000>x"),
           std::string("<table><td rowspan=\xA0"
                       "20000>x"),
           "<table>" + Repeated("<td colspan=9999>x", 9),
           "<table>" + Repeated("<t&#100;>x", 300) + Repeated("<\"tr\">x", 300),
           // Style sheets: selectors, depth, and what may hide either.
           "<style>" + Repeated("p p b{color:red}", 1500) + "</style>" + Repeated("<p><b>x", 900),
           "<style>" + Repeated("div ", 100) + "{color:red}</style>" + Repeated("<div>", 1900),
           "<style>x div{color:red}</style>" + Repeated("<div>", 1900),
           "<st&#121;le>x div{color:red}</style>" + Repeated("<div>", 1900),
           "< style>x div{color:red}</' style'>" + Repeated("<div>", 1900),
           "<style>x div{color:red}</style>" + Repeated("<p><div></p>", 600),
           "<style>x div{color:red}</style>" + Repeated("<div title='</div>'>", 900),
           "<style>x div{color:red}</style>" + Repeated("<div><!-->--></div>", 600),
           "<style>/*{*/" + Repeated("x div,", 99) + "/*}*/y{color:red}</style>" +
               Repeated("<div>", 900),
           "<style>" + Repeated(".z,", 8000) + "y{color:red}</style>" +
               Repeated("<p class='" + Repeated("a ", 3000) + "'>", 5),
           // Lengths.
           std::string("<p style='line-height:100000000%'>x<br>x</p><p>y</p>"),
           "<p style='font-size:1000px; line-height:20000%'>" + Repeated("x<br>", 20),
           Repeated("<p style='margin-top:1000000px'>x", 10),
           Repeated("<p style='margin-top:19999px'>x", 200),
           Repeated(picture("width=100000 height=100000"), 160),
           Repeated(picture("width=19999 height=19999"), 160),
           Repeated("<p style='letter-spacing:19999px'>xxxxxxxxxxxxx", 20),
           Repeated("<table width=15000%><tr><td>", 6),
           Repeated("<table cellpadding=19999><tr><td>x</table>", 100),
           std::string("<p style='font-size:3000000px'>x"),
           std::string("<p style='text-indent:99999999px'>x"),
       }) {
    const std::clock_t start = std::clock();
    Show("vorher");
    Show(page);
    EXPECT_EQ(strip.toPlainText(), "") << page.substr(0, 60);
    EXPECT_LT(SecondsOfWorkSince(start), 1) << page.substr(0, 60);
  }
  strip.Navigate(folder.Dos("missing.htm"));
  EXPECT_EQ(strip.toPlainText(), "");
}

// What is just within the limits. The bound is generous, for slow and busy machines.
TEST_F(HtmlStripTest, ShowsTheLargestPagesInTime) {
  for (const std::string& page : {
           std::string(HtmlStrip::kLargestPage, 'x'),
           Repeated("<p>x", 1990),
           Repeated("<ul><li>", 990) + "x",
           Repeated("<font color=red>x", 1990),
           Repeated("<table><tr><td>", 12) + "x",
           "<table>" + Repeated("<tr><td colspan=100>x", 40),
           "<table><tr>" + Repeated("<td>x", 98) + Repeated("<tr><td>x", 98),
           "<table>" + Repeated("<tr>" + Repeated("<td>x", 4), 120) + "</table>",
           "<style>p, b{color:red}</style>" + Repeated("<p><b>x</b>", 600),
           "<style>" + Repeated("x div,", 17) + "y{color:red}</style>" + Repeated("<div>", 110) +
               "x",
           "<style>x div{color:red}</style>" + Repeated("<div>", 250) + "x",
           "<style>" + Repeated(".z,", 900) + "y{color:red}</style><p class='" +
               Repeated("a ", 25000) + "'>x",
           "<style>" + Repeated("td b, ", 20) + "y{color:red}</style><table>" +
               Repeated("<tr><td><b>x</b><td>x", 150) + "</table>",
           Repeated("<p style='margin-top:9900px'>x", 200),
           Repeated("<img src='data:,a' width=6000 height=6000>", 160) + "x",
           std::string("<p style='font-size:19999px'>x"),
       }) {
    const std::clock_t start = std::clock();
    Show(page);
    RenderedAt(strip, 1);
    EXPECT_NE(strip.toPlainText(), "") << page.substr(0, 60);
    EXPECT_LT(SecondsOfWorkSince(start), 6) << page.substr(0, 60);
  }
}

TEST_F(HtmlStripTest, ShowsOnlySoManyPixelsOfPictures) {
  // Two pictures of five million pixels: the second is more than a page may have.
  const auto large = [](const char* name) {
    return "<img width=20 height=20 src=\"data:image/png;" + std::string(name) + ";base64," +
           RedPicture({2500, 2000}).toBase64().toStdString() + "\">";
  };
  Show(large("a=1") + large("a=2"));
  EXPECT_EQ(RedPixels(1), 400);
}

}  // namespace
