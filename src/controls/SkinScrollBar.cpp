#include "controls/SkinScrollBar.h"

#include <QPainter>
#include <QPolygonF>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>

#include "controls/Colours.h"
#include "controls/Painting.h"

namespace {

// As the bars of the lists have them: at rest, under the mouse, pressed.
struct PartLook {
  ColourNumber face;
  ColourNumber frame;
  ColourNumber mark;
};
constexpr PartLook kAtRest = {10784648, 4336663, 4336663};
constexpr PartLook kOver = {12957875, 3656959, 4336663};
constexpr PartLook kPressed = {6050376, 16777215, 16777215};
constexpr ColourNumber kTrack = 11904415;
constexpr ColourNumber kTrackEdge = 10784648;
constexpr ColourNumber kIdleMark = 8022378;  // an arrow that leads nowhere
constexpr ColourNumber kGrooveLight = 14999516;

const PartLook& LookOf(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  if (!bar.activeSubControls.testFlag(part)) return kAtRest;
  if (bar.state.testFlag(QStyle::State_Sunken)) return kPressed;
  return bar.state.testFlag(QStyle::State_MouseOver) ? kOver : kAtRest;
}

void DrawFace(QPainter& painter, const QRect& box, const PartLook& look) {
  Painting::Fill(painter, box, Colours::ToQColor(look.face));
  Painting::Frame(painter, box, 1, Colours::ToQColor(look.frame));
}

// `angle` in degrees: 0 points up, 90 to the right.
void DrawArrow(QPainter& painter, const QRect& box, double angle, ColourNumber colour) {
  constexpr double kHalfWidth = 3.5;
  constexpr double kHalfHeight = 2;
  painter.save();
  painter.translate(QRectF(box).center());
  painter.rotate(angle);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Colours::ToQColor(colour));
  painter.drawPolygon(
      QPolygonF({{0, -kHalfHeight}, {kHalfWidth, kHalfHeight}, {-kHalfWidth, kHalfHeight}}));
  painter.restore();
}

// Three grooves across the handle, lit from above.
void DrawGrooves(QPainter& painter, const QRect& handle, bool isUpright, const PartLook& look) {
  constexpr int kGroove = 7;
  const QPoint middle(handle.x() + handle.width() / 2, handle.y() + handle.height() / 2);
  const auto line = [&](int offset) {
    return isUpright ? QRect(middle.x() - kGroove / 2, middle.y() + offset, kGroove, 1)
                     : QRect(middle.x() + offset, middle.y() - kGroove / 2, 1, kGroove);
  };
  for (const int offset : {-4, -1, 2}) {
    Painting::Fill(painter, line(offset), Colours::ToQColor(look.mark));
    if (look.face == kPressed.face) continue;
    Painting::Fill(painter, line(offset + 1), Colours::ToQColor(kGrooveLight));
  }
}

class Style : public QProxyStyle {
 public:
  // The toolkit's plainest style has its arrows at both ends on every desktop.
  Style() : QProxyStyle(QStyleFactory::create("Windows")) {}

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    if (metric == PM_ScrollBarExtent || metric == PM_ScrollBarSliderMin) {
      return SkinScrollBar::kWidth;
    }
    return QProxyStyle::pixelMetric(metric, option, widget);
  }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override {
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && bar != nullptr) {
      DrawScrollBar(*bar, *painter, widget);
    } else {
      QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
  }

 private:
  void DrawScrollBar(const QStyleOptionSlider& bar, QPainter& painter,
                     const QWidget* widget) const {
    const bool isUpright = bar.orientation == Qt::Vertical;
    const double turn = isUpright ? 0 : -90;
    const QRect edge(0, 0, isUpright ? 1 : bar.rect.width(), isUpright ? bar.rect.height() : 1);
    Painting::Fill(painter, bar.rect, Colours::ToQColor(kTrack));
    Painting::Fill(painter, edge, Colours::ToQColor(kTrackEdge));
    struct Arrow {
      SubControl part;
      double angle;
      int end;
    };
    for (const Arrow& arrow : {Arrow{SC_ScrollBarSubLine, turn, bar.minimum},
                               Arrow{SC_ScrollBarAddLine, turn + 180, bar.maximum}}) {
      const bool leadsOn = bar.sliderPosition != arrow.end;
      const PartLook& look = leadsOn ? LookOf(bar, arrow.part) : kAtRest;
      const QRect box = subControlRect(CC_ScrollBar, &bar, arrow.part, widget);
      DrawFace(painter, box, look);
      DrawArrow(painter, box, arrow.angle, leadsOn ? look.mark : kIdleMark);
    }
    if (bar.minimum == bar.maximum) return;
    const QRect handle = subControlRect(CC_ScrollBar, &bar, SC_ScrollBarSlider, widget);
    const PartLook& look = LookOf(bar, SC_ScrollBarSlider);
    DrawFace(painter, handle, look);
    DrawGrooves(painter, handle, isUpright, look);
  }
};

}  // namespace

namespace SkinScrollBar {

void Apply(QScrollBar& bar) {
  auto* const style = new Style;
  style->setParent(&bar);
  bar.setStyle(style);
  bar.setAttribute(Qt::WA_Hover);
}

}  // namespace SkinScrollBar
