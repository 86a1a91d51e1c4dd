#include "ui/HtmlStrip.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QStringDecoder>
#include <memory>
#include <utility>

#include "controls/FocusFrame.h"
#include "controls/SkinScrollBar.h"
#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"
#include "ui/ClosedDocument.h"
#include "ui/EngineText.h"

namespace {

// A web browser's own colours, whatever the desktop's are: pages count on them.
constexpr QRgb kPaper = 0xFFFFFF;
constexpr QRgb kInk = 0x000000;
constexpr QRgb kLink = 0x0000EE;

std::string ReadPage(const FileSystem& files, const std::string& path) {
  const File file = files.OpenForReading(path);
  if (file.Size() > HtmlStrip::kLargestPage) {
    Fail("page \"", path, "\": ", file.Size(), " bytes, of which ", HtmlStrip::kLargestPage,
         " can be shown");
  }
  return file.ReadAt(0, file.Size());
}

QString Decode(const std::string& page) {
  static const QRegularExpression kSaysUtf8(R"(<meta\b[^>]*\bcharset\s*=\s*["']?\s*utf-?8\b)",
                                            QRegularExpression::CaseInsensitiveOption);
  QString text = ToQString(page);
  const bool hasMark = page.starts_with("\xEF\xBB\xBF");
  if (!hasMark && !kSaysUtf8.match(text).hasMatch()) return text;
  QStringDecoder decoder(QStringConverter::Utf8);
  QString decoded = decoder.decode(QByteArrayView(page.data(), std::ssize(page)));
  return decoder.hasError() ? text : decoded;
}

}  // namespace

HtmlStrip::HtmlStrip(QWidget* parent, const FileSystem& files, ShellOpener& shell)
    : QTextBrowser(parent), files_(files), shell_(shell) {
  setObjectName("html");
  setAccessibleName("Seite des Modpacks");
  setFrameShape(QFrame::NoFrame);
  setOpenLinks(false);
  new FocusFrame(this);
  setWordWrapMode(QTextOption::WordWrap);
  SkinScrollBar::Apply(*verticalScrollBar());
  SkinScrollBar::Apply(*horizontalScrollBar());
  QPalette colours = palette();
  colours.setColor(QPalette::Base, kPaper);
  colours.setColor(QPalette::Text, kInk);
  colours.setColor(QPalette::Link, kLink);
  setPalette(colours);
  connect(this, &QTextBrowser::anchorClicked, this, &HtmlStrip::Follow);
  ShowPage(QString());
}

void HtmlStrip::Navigate(const std::string& path) {
  Trapped("frmMain.html_Navigate", [&] {
    ShowPage(QString());
    ShowPage(Decode(ReadPage(files_, path)));
  });
}

void HtmlStrip::ShowPage(const QString& text) {
  auto page = std::make_unique<ClosedDocument>(text, this);
  page->setDefaultTextOption(document()->defaultTextOption());
  setDocument(page.get());
  delete std::exchange(page_, page.release());  // the strip doesn't, except for its very first one
}

void HtmlStrip::Follow(const QUrl& link) {
  Trapped("frmMain.html_BeforeNavigate", [&] {
    const QString scheme = link.scheme();
    if ((scheme == "http" || scheme == "https") && !link.host().isEmpty()) {
      shell_.Open(link.toEncoded().toStdString(), std::string());
    } else if (scheme.isEmpty() && link.path().isEmpty() && link.hasFragment()) {
      scrollToAnchor(link.fragment());
    }
  });
}

QVariant HtmlStrip::loadResource(int /*type*/, const QUrl& /*name*/) {
  return QByteArray();
}

void HtmlStrip::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {}
