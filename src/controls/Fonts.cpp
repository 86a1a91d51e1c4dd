#include "controls/Fonts.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QHash>
#include <algorithm>
#include <array>
#include <vector>

namespace {

constexpr const char* kTahoma = "Tahoma";
constexpr const char* kMarlett = "Marlett";
// Where Debian's fonts-wine lays the free fonts of these names. The outlines of its bold Tahoma
// are wider but no bolder, so it is left out: the toolkit makes a better one from the plain face.
constexpr std::array<const char*, 2> kFreeFonts = {"/usr/share/wine/fonts/tahoma.ttf",
                                                   "/usr/share/wine/fonts/marlett.ttf"};

bool IsThere(const char* family) {
  return QFontDatabase::families().contains(family);
}

// Whether the face that serves for the font has a bold one beside it. What is asked for is kept:
// finding the face out takes longer than drawing.
bool HasOwnBold(const QFont& font) {
  static QHash<QString, bool> known;
  const auto found = known.constFind(font.family());
  if (found != known.constEnd()) return *found;
  const QString family = QFontInfo(font).family();
  const QStringList styles = QFontDatabase::styles(family);
  const bool has = std::any_of(styles.begin(), styles.end(), [&](const QString& style) {
    return QFontDatabase::weight(family, style) >= QFont::Bold;
  });
  known.insert(font.family(), has);
  return has;
}

// One stroke of a glyph, in tenths of its box's width and height.
using Stroke = std::vector<QPointF>;

std::vector<Stroke> StrokesOf(QChar glyph) {
  switch (glyph.unicode()) {
    case 'r':
      return {Stroke{{2, 2}, {8, 8}}, Stroke{{8, 2}, {2, 8}}};
    case '0':
      return {Stroke{{2, 8}, {7, 8}}};
    case '1':
      return {Stroke{{1, 1}, {9, 1}, {9, 9}, {1, 9}, {1, 1}}, Stroke{{1, 2}, {9, 2}}};
    case '2':
      return {Stroke{{3, 1}, {9, 1}, {9, 6}, {3, 6}, {3, 1}},
              Stroke{{1, 4}, {7, 4}, {7, 9}, {1, 9}, {1, 4}}};
    case 'a':
    case 'b':
      return {Stroke{{2, 5}, {4, 8}, {8, 2}}};
    default:
      return {};
  }
}

}  // namespace

namespace Fonts {

void DrawGlyph(QPainter& painter, const QRect& box, int size, QChar glyph) {
  constexpr double kTenths = 10.0;
  const double unit = size / kTenths;
  const QPointF corner(box.left() + (box.width() - size) / 2.0,
                       box.top() + (box.height() - size) / 2.0);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QPen pen = painter.pen();
  pen.setWidthF(std::max(1.0, size / 7.0));
  pen.setCapStyle(Qt::FlatCap);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.translate(corner);
  for (Stroke stroke : StrokesOf(glyph)) {
    for (QPointF& point : stroke) point *= unit;
    painter.drawPolyline(stroke.data(), static_cast<int>(stroke.size()));
  }
  painter.restore();
}

void Load() {
  for (const char* const file : kFreeFonts) {
    const char* const family = QString(file).contains("marlett") ? kMarlett : kTahoma;
    if (!IsThere(family) && QFileInfo::exists(file)) QFontDatabase::addApplicationFont(file);
  }
}

QFont Tahoma(int pixels) {
  QFont font;
  font.setFamilies({kTahoma, "Verdana", "DejaVu Sans", "Liberation Sans", "Noto Sans", "Arial"});
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(pixels);
  return font;
}

QFont Marlett(int pixels) {
  QFont font;
  font.setFamily(kMarlett);
  font.setPixelSize(pixels);
  return font;
}

bool NeedsDrawnGlyphs(const QFont& font) {
  return font.families().contains(kMarlett) && !IsThere(kMarlett);
}

QSize CaptionSize(const QFont& font, const QString& caption) {
  if (NeedsDrawnGlyphs(font)) {
    const int box = QFontInfo(font).pixelSize();
    return {box * static_cast<int>(caption.size()), box};
  }
  QSize size = QFontMetrics(font).size(0, caption);
  if (font.stretch() != QFont::AnyStretch) {
    // A squeezed face rounds the height of its lines in its own way.
    QFont asItIs = font;
    asItIs.setStretch(QFont::AnyStretch);
    size.setHeight(QFontMetrics(asItIs).size(0, caption).height());
  }
  return size;
}

QRect InkBox(const QRect& box, const QFont& font, const QString& caption) {
  const QSize size = CaptionSize(font, caption);
  const QPoint corner =
      box.topLeft() + QPoint(box.width() - size.width(), box.height() - size.height()) / 2;
  if (NeedsDrawnGlyphs(font)) return {corner, size};
  const QFontMetrics metrics(font);
  return metrics.tightBoundingRect(caption).translated(corner + QPoint(0, metrics.ascent()));
}

void PrintInWeight(QPainter& painter, const std::function<void()>& print) {
  print();
  const double ratio = painter.deviceTransform().m11();
  if (ratio <= 1 || !painter.font().bold() || HasOwnBold(painter.font())) return;
  // Measured: with this the bold of one screen has the share of ink that it has on another.
  constexpr double kMissing = 0.7;  // device pixels of a stem, for each beyond the first
  painter.save();
  painter.setOpacity(painter.opacity() * std::min(1.0, kMissing * (ratio - 1)));
  painter.translate(1 / ratio, 0);
  print();
  painter.restore();
}

void DrawCaption(QPainter& painter, const QRect& box, const QFont& font, const QString& caption) {
  if (NeedsDrawnGlyphs(font)) {
    for (const QChar glyph : caption) DrawGlyph(painter, box, QFontInfo(font).pixelSize(), glyph);
    return;
  }
  const double above = (box.height() - CaptionSize(font, caption).height()) / 2.0;
  painter.setFont(font);
  painter.drawText(QRectF(box).translated(0, above),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextDontClip, caption);
}

}  // namespace Fonts
