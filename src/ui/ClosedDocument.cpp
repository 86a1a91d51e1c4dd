#include "ui/ClosedDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QImage>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>

#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "ui/PageLimits.h"
#include "ui/PagePictures.h"
#include "ui/PictureLoader.h"

namespace {

constexpr int kTextPixels = 16;  // what web browsers begin with
constexpr int kMargin = 8;

// An empty cell of a given height is a coloured line. The toolkit would give it the height of a
// line of text; an empty place for a picture in the smallest letters keeps it low.
QString WithLowCells(QString html) {
  static const QRegularExpression kEmptyCell(
      R"((<td\b[^<>]*\bheight\s*=\s*["']?(\d{1,3})\b[^<>]*>)\s*(?=</td|<td|</tr))",
      QRegularExpression::CaseInsensitiveOption);
  return html.replace(
      kEmptyCell,
      R"(\1<span style="font-size: 1px"><img src="data:," width="1" height="\2"></span>)");
}

// A page that sets the margin of its body gets just that; the toolkit adds it to its own.
bool SetsMargin(const QString& html) {
  static const QRegularExpression kRule(R"(\bbody\b[^{}<>]*\{[^}]*\bmargin)",
                                        QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression kTag(R"(<body\b[^>]*\bmargin|<body\b[^>]*\b(?:top|left)margin)",
                                       QRegularExpression::CaseInsensitiveOption);
  return kRule.match(html).hasMatch() || kTag.match(html).hasMatch();
}

QFont PageFont() {
  QFont font;
  font.setFamilies({"Times New Roman", "Liberation Serif", "DejaVu Serif", "Times"});
  font.setStyleHint(QFont::Serif);
  font.setPixelSize(kTextPixels);
  return font;
}

}  // namespace

// The toolkit lays a document out as soon as it has a layout, which draws pictures its own way
// until it is told otherwise: so the page is checked in a document without, and the real one is
// told first.
ClosedDocument::ClosedDocument(const QString& html, QObject* parent) : QTextDocument(parent) {
  PageLimits::Check(html);
  setUndoRedoEnabled(false);
  setDefaultFont(PageFont());
  setDocumentMargin(SetsMargin(html) ? 0 : kMargin);
  documentLayout()->registerHandler(QTextFormat::ImageObject, new PagePictures(this));
  setHtml(WithLowCells(html));
}

// What is refused is no bytes, not nothing: for that the toolkit would look elsewhere.
QVariant ClosedDocument::loadResource(int type, const QUrl& name) {
  QVariant resource = QByteArray();
  Trapped("frmMain.html_Picture", [&] {
    if (type == ImageResource && name.scheme() == "data") resource = ReadPicture(name);
  });
  addResource(type, name, resource);  // so that it isn't asked for again
  return resource;
}

QImage ClosedDocument::ReadPicture(const QUrl& address) {
  // data:image/png;base64,iVBORw0KGgo...
  const QByteArray text = address.path(QUrl::FullyEncoded).toLatin1();
  const qsizetype comma = text.indexOf(',');
  if (comma < 0) Fail("picture \"data:\": the address has no comma");
  QByteArray bytes = QByteArray::fromPercentEncoding(text.mid(comma + 1));
  if (text.left(comma).toLower().endsWith(";base64")) bytes = QByteArray::fromBase64(bytes);
  QImage picture = PictureLoader::FromBytes(bytes, "data:", pixelsLeft_);
  pixelsLeft_ -= std::int64_t{picture.width()} * picture.height();
  return picture;
}
