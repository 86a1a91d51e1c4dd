#include "ui/PageLimits.h"

#include <QRegularExpression>
#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>
#include <QVariant>
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "platform/Failure.h"

namespace {

constexpr int kMostDepth = 30;
constexpr double kUsualTextPixels = 16;
constexpr double kIndentPixels = 40;

using Option = QRegularExpression;

// ---------------------------------------------------------------------------------- its letters

// The parser takes `&#116;` for a letter everywhere, in names of tags and attributes too.
QString WithoutEntities(const QString& html) {
  static const QRegularExpression kEntity("&#([xX]?)([^;&\\s]{1,8});");
  QString plain;
  qsizetype end = 0;
  for (auto found = kEntity.globalMatch(html); found.hasNext();) {
    const QRegularExpressionMatch entity = found.next();
    constexpr uint kAfterAscii = 0x80;
    constexpr int kHexadecimal = 16;
    bool isNumber = false;
    const int base = entity.capturedLength(1) == 0 ? 10 : kHexadecimal;
    const uint letter = entity.capturedView(2).toUInt(&isNumber, base);
    if (!isNumber || letter >= kAfterAscii) continue;
    plain += QStringView(html).mid(end, entity.capturedStart() - end);
    plain += QChar(letter);
    end = entity.capturedEnd();
  }
  plain += QStringView(html).mid(end);
  return plain;
}

// The letters that may belong to style sheets: from the first one's tag to the last one's end.
QString StyleSheets(const QString& plain) {
  static const QRegularExpression kOpen(
      R"(<\s*["']?style)", Option::CaseInsensitiveOption | Option::UseUnicodePropertiesOption);
  static const QRegularExpression kClose(
      R"(</\s*["']?style)", Option::CaseInsensitiveOption | Option::UseUnicodePropertiesOption);
  const qsizetype first = plain.indexOf(kOpen);
  if (first < 0) return {};
  const qsizetype end = plain.lastIndexOf(kClose);
  return end > plain.lastIndexOf(kOpen) ? plain.mid(first, end - first) : plain.mid(first);
}

// At least as many as there are. Braces count as those of a rule only where nothing between them,
// such as a comment's end, could say otherwise.
std::int64_t SimpleSelectors(QString sheets) {
  static const QRegularExpression kRule(R"(\{(?:[^{}"'*\\&<>]|"[\w .,-]*+"|'[\w .,-]*+')*+\})");
  static const QRegularExpression kSimple(R"(\*|[^\s,>+~.:#\[\]*&;{}()]++)");
  sheets.replace(kRule, " ");
  std::int64_t count = 0;
  for (auto found = kSimple.globalMatch(sheets); found.hasNext(); found.next()) ++count;
  return count;
}

const QStringList kParagraph = {"p"};
const QStringList kEntries = {"p", "li", "dd", "dt", "td", "th", "tr"};

// The tags that may go without an end of their own and have it where this one begins.
QStringList EndedBy(const QString& opened) {
  if (opened == "tr") return {"p", "td", "th", "tr"};
  if (opened == "td" || opened == "th") return {"p", "td", "th"};
  if (opened == "dd" || opened == "dt") return {"p", "dd", "dt"};
  if (opened == "li") return {"p", "li"};
  return opened == "p" ? kParagraph : QStringList();
}

// How deep tags stand in one another, or more. What isn't plain to read may hide that a tag's end
// is none: from there on nothing ends.
std::int64_t DepthOf(const QString& html) {
  static const QRegularExpression kTag(
      R"(<(?:(?<other>!--[^<]*?-->|![^-<>][^<>]*+>))"
      R"(|/(?<close>[a-z][a-z0-9]*+)\s*+>)"
      R"(|(?<open>[a-z][a-z0-9]*+))"
      R"((?:\s++[a-z-]++(?:\s*+=\s*+(?:"[^"<>]*+"|'[^'<>]*+'|[^\s"'<>=&]++))?+)*+\s*+/?>)?)",
      Option::CaseInsensitiveOption);
  static const QStringList kEmpty = {"br", "hr", "img", "meta"};
  static const QStringList kLists = {"ul", "ol", "dl", "table"};
  QStringList open;
  qsizetype deepest = 0;
  bool isPlain = true;
  for (auto found = kTag.globalMatch(html); found.hasNext();) {
    const QRegularExpressionMatch tag = found.next();
    const QString opened = tag.captured("open").toLower();
    const QString closed = tag.captured("close").toLower();
    if (!closed.isEmpty() && isPlain) {
      qsizetype last = open.size() - 1;
      const QStringList& ended = kLists.contains(closed) ? kEntries : kParagraph;
      while (last >= 0 && open[last] != closed && ended.contains(open[last])) --last;
      if (last >= 0 && open[last] == closed) open.resize(last);
    } else if (tag.capturedLength("other") == 0 && closed.isEmpty()) {
      isPlain = isPlain && !opened.isEmpty();
      const QStringList ended = EndedBy(opened);
      while (!open.isEmpty() && ended.contains(open.last())) open.removeLast();
      if (!kEmpty.contains(opened)) open.append(opened);
    }
    deepest = std::max(deepest, open.size());
  }
  return deepest;
}

void CheckAmount(const QString& html, const QString& plain) {
  const std::int64_t tags = html.count('<');
  if (tags > PageLimits::kMostTags) Fail("page: ", tags, " tags are more than can be shown");
  const QString sheets = StyleSheets(plain);
  if (sheets.isEmpty()) return;
  const std::int64_t selectors = SimpleSelectors(sheets);
  const std::int64_t depth = DepthOf(html);
  const std::int64_t letters = std::max(plain.size() - sheets.size(), qsizetype{0}) + 1;
  if (tags * selectors > PageLimits::kMostRuleTrials ||
      letters * selectors * depth * depth > PageLimits::kMostRuleWork) {
    Fail("page: ", selectors, " selectors for ", tags, " tags, up to ", depth,
         " in one another, are more than can be shown");
  }
}

// A table's grid has a place for each column in each row. The columns of the widest table are no
// more than all cells of the page and what they span.
void CheckGrid(const QString& plain) {
  static const QRegularExpression kPart(
      R"(<\s*["']?(td|th|tr|table)|(col|row)span(?:\s*=\s*["']?(\d{1,4})(?=["'\s>/]))?)",
      Option::CaseInsensitiveOption | Option::UseUnicodePropertiesOption);
  std::int64_t columns = 0;
  std::int64_t rows = 0;
  for (auto parts = kPart.globalMatch(plain); parts.hasNext();) {
    const QRegularExpressionMatch part = parts.next();
    const QString tag = part.captured(1).toLower();
    if (tag.isEmpty() && !part.hasCaptured(3)) Fail("page: a cell spans what is no plain number");
    const bool isRow =
        tag.isEmpty() ? part.captured(2).toLower() == "row" : tag == "tr" || tag == "table";
    (isRow ? rows : columns) += tag.isEmpty() ? part.captured(3).toLongLong() : 1;
  }
  if (columns * rows > PageLimits::kMostParsedPlaces) {
    Fail("page: up to ", columns, " x ", rows, " places in its tables are more than can be shown");
  }
}

// ------------------------------------------------------------------- what the parser makes of it

/// A page that nothing is loaded for and that is never laid out.
class UnseenDocument : public QTextDocument {
 protected:
  QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return QByteArray(); }
};

void CheckLength(const QTextLength& length) {
  const double most = length.type() == QTextLength::PercentageLength ? PageLimits::kMostPercent
                                                                     : PageLimits::kLongest;
  // Not for one that is no number either.
  if (!(std::abs(length.rawValue()) <= most)) {
    Fail("page: a length of ", length.rawValue(), " is more than can be shown");
  }
}

// All numbers of a format, whatever they are: those that are no lengths are low.
void CheckLengths(const QTextFormat& format) {
  const QMap<int, QVariant> properties = format.properties();
  for (const QVariant& value : properties) {
    const int type = value.typeId();
    if (type == QMetaType::Double || type == QMetaType::Float || type == QMetaType::Int) {
      CheckLength(QTextLength(QTextLength::FixedLength, value.toDouble()));
    } else if (type == qMetaTypeId<QTextLength>()) {
      CheckLength(value.value<QTextLength>());
    } else if (type == qMetaTypeId<QList<QTextLength>>()) {
      const auto lengths = value.value<QList<QTextLength>>();
      for (const QTextLength& length : lengths) CheckLength(length);
    }
  }
}

// The lengths of a format that move what stands beside or below.
double OwnLength(const QTextFormat& format) {
  constexpr std::array kLengths = {
      QTextFormat::BlockTopMargin,       QTextFormat::BlockBottomMargin,
      QTextFormat::BlockLeftMargin,      QTextFormat::BlockRightMargin,
      QTextFormat::TextIndent,           QTextFormat::FrameBorder,
      QTextFormat::FramePadding,         QTextFormat::FrameTopMargin,
      QTextFormat::FrameBottomMargin,    QTextFormat::FrameLeftMargin,
      QTextFormat::FrameRightMargin,     QTextFormat::TableCellTopPadding,
      QTextFormat::TableCellLeftPadding, QTextFormat::TableCellBottomPadding,
      QTextFormat::TableCellTopBorder,   QTextFormat::TableCellRightPadding,
      QTextFormat::TableCellLeftBorder,  QTextFormat::TableCellBottomBorder,
      QTextFormat::TableCellRightBorder, QTextFormat::ImageWidth,
      QTextFormat::ImageHeight,
  };
  double sum = std::abs(format.intProperty(QTextFormat::BlockIndent)) * kIndentPixels;
  for (const QTextFormat::Property property : kLengths) {
    sum += std::abs(format.doubleProperty(property));
  }
  for (const auto property : {QTextFormat::FrameWidth, QTextFormat::FrameHeight}) {
    const QTextLength length = format.lengthProperty(property);
    if (length.type() == QTextLength::FixedLength) sum += std::abs(length.rawValue());
  }
  return sum;
}

// Of a line, and along with it of a letter and what stands beside that.
double LineLength(const QTextBlockFormat& block, const QTextCharFormat& letters) {
  constexpr double kPixelsPerPoint = 2;  // at most
  constexpr double kHundred = 100;
  const double pixels = letters.intProperty(QTextFormat::FontPixelSize);
  const double points = letters.fontPointSize() * kPixelsPerPoint;
  double height = std::max({pixels, points, kUsualTextPixels});
  if (block.lineHeightType() == QTextBlockFormat::ProportionalHeight) {
    height *= std::max(std::abs(block.lineHeight()) / kHundred, 1.0);
  } else {
    height += std::abs(block.lineHeight());
  }
  return height + std::abs(letters.fontLetterSpacing()) + std::abs(letters.fontWordSpacing());
}

double LengthOfText(const QTextDocument& document) {
  double sum = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    const QTextBlockFormat format = block.blockFormat();
    sum += OwnLength(format) + LineLength(format, block.charFormat());
    for (auto place = block.begin(); !place.atEnd(); ++place) {
      const QTextFragment part = place.fragment();
      const double each = LineLength(format, part.charFormat()) + OwnLength(part.charFormat());
      sum += part.length() * each;
    }
  }
  return sum;
}

double LengthOfTable(const QTextTable& table) {
  const QTextTableFormat format = table.format();
  const double beside =
      2 * std::abs(format.cellPadding()) + std::abs(format.cellSpacing()) + 2 * format.border();
  double sum = (table.rows() + table.columns()) * beside;
  for (const QTextLength& column : format.columnWidthConstraints()) {
    if (column.type() == QTextLength::FixedLength) sum += std::abs(column.rawValue());
  }
  for (int row = 0; row < table.rows(); ++row) {
    for (int column = 0; column < table.columns(); ++column) {
      sum += OwnLength(table.cellAt(row, column).format());
    }
  }
  return sum;
}

// Each table is laid out twice for each layout of the one around it.
double CheckTables(const QTextDocument& document) {
  struct Place {
    const QTextFrame* frame;
    int depth;
  };
  double length = 0;
  std::int64_t layouts = 0;
  std::int64_t places = 0;
  std::vector<Place> open = {{document.rootFrame(), 0}};
  while (!open.empty()) {
    const auto [frame, depth] = open.back();
    open.pop_back();
    layouts += std::int64_t{1} << std::min(depth, kMostDepth);
    const auto* const table = qobject_cast<const QTextTable*>(frame);
    if (table != nullptr) {
      const std::int64_t grid = std::int64_t{table->rows()} * table->columns();
      places += grid << std::min(depth - 1, kMostDepth);
    }
    if (layouts > PageLimits::kMostTableLayouts || places > PageLimits::kMostPlaces) {
      Fail("page: its tables are more, or deeper in one another, than can be shown");
    }
    length += OwnLength(frame->frameFormat());
    if (table != nullptr) length += LengthOfTable(*table);
    for (const QTextFrame* const child : frame->childFrames()) open.push_back({child, depth + 1});
  }
  return length;
}

}  // namespace

void PageLimits::Check(const QString& html) {
  const QString plain = WithoutEntities(html);
  CheckAmount(html, plain);
  CheckGrid(plain);
  UnseenDocument document;
  document.setUndoRedoEnabled(false);
  document.setHtml(html);
  const QList<QTextFormat> formats = document.allFormats();
  for (const QTextFormat& format : formats) CheckLengths(format);
  const double length = CheckTables(document) + LengthOfText(document);
  if (length > kMostLength) Fail("page: ", length, " pixels of it are more than can be shown");
}
