#include "controls/gallery/Gallery.h"

#include <QLabel>
#include <QPainter>

#include "controls/Colours.h"
#include "controls/CtrlScroller.h"
#include "controls/Fonts.h"
#include "controls/SizeGrip.h"
#include "controls/Skin.h"
#include "controls/ngBtn.h"
#include "controls/skinBtn.h"
#include "controls/tc_PBar.h"

namespace {

constexpr QSize kSize(900, 640);
constexpr ColourNumber kFrame = 11904415;
constexpr ColourNumber kPanel = 10784648;
constexpr ColourNumber kWhite = 16777215;
constexpr QRect kSplash(16, 552, 395, 75);
constexpr int kTileWidth = 40;
constexpr int kTileHeight = 47;
constexpr int kTick = 15;     // milliseconds
constexpr int kBarTick = 60;  // milliseconds
constexpr int kButtonHeight = 21;

}  // namespace

Gallery::Gallery(QWidget* parent) : QWidget(parent) {
  setWindowTitle("KELVO: controls");
  setWindowIcon(QIcon(":/skin/kelvo_48.png"));
  setMinimumSize(kSize);
  resize(kSize);
  setAutoFillBackground(true);
  QPalette colours = palette();
  colours.setColor(QPalette::Window, Colours::ToQColor(kFrame));
  setPalette(colours);

  AddSkinButtons();
  AddPictureButtons();
  AddBars();
  AddScrollers();
  AddPictures();
  new SizeGrip(this);
}

void Gallery::AddHeading(int x, int y, const QString& text) {
  auto* const label = new QLabel(text, this);
  QFont font = Fonts::Tahoma();
  font.setBold(true);
  label->setFont(font);
  label->move(x, y);
}

skinBtn* Gallery::AddSkinButton(int x, int y, int width, const QString& caption) {
  auto* const button = new skinBtn(this);
  button->setGeometry(x, y, width, kButtonHeight);
  button->SetCaption(caption);
  return button;
}

void Gallery::AddSkinButtons() {
  AddHeading(16, 12, "skinBtn: normal, over, pressed, disabled, live");
  struct Look {
    const char* caption;
    void (skinBtn::*apply)(bool force);
  };
  int x = 16;
  for (const Look& look : {Look{"Normal", &skinBtn::Normal}, Look{"Over", &skinBtn::MouseMove},
                           Look{"Pressed", &skinBtn::MouseDown}}) {
    skinBtn* const button = AddSkinButton(x, 32, 84, look.caption);
    button->SetAutoDrawButton(false);
    (button->*look.apply)(true);
    x += 92;
  }
  AddSkinButton(x, 32, 84, "Disabled")->SetEnabled(false);
  skinBtn* const live = AddSkinButton(x + 92, 32, 100, "Übernehmen");
  live->SetDrawFocusRect(true);

  AddHeading(16, 62, "Shapes 0 to 5, without border, window glyphs");
  x = 16;
  for (int shape = skinBtn::kRectangle; shape <= skinBtn::kRoundedSquare; ++shape) {
    skinBtn* const button = AddSkinButton(x, 82, 44, QString::number(shape));
    button->SetShape(shape);
    x += 48;
  }
  skinBtn* const plain = AddSkinButton(x, 82, 60, "plain");
  plain->SetBorderStyleNormal(0);
  plain->SetBorderStyleMouseMove(0);
  plain->SetBorderStyleMouseDown(0);
  x += 64;
  for (const char* const glyph : {"0", "1", "2", "r", "a"}) {
    skinBtn* const button = AddSkinButton(x, 82, kButtonHeight, glyph);
    for (const auto set :
         {&skinBtn::SetFontNormal, &skinBtn::SetFontMouseMove, &skinBtn::SetFontMouseDown}) {
      (button->*set)(Fonts::Marlett(Fonts::kTextPixels));
    }
    x += kButtonHeight + 1;
  }
}

ngBtn* Gallery::AddPictureButton(int x, int y, const QString& name, const QString& caption,
                                 const QStringList& states) {
  auto* const button = new ngBtn(this);
  button->setGeometry(x, y, 88, 31);
  const auto picture = [&](int state) {
    return Skin::Picture("button_" + name + "_" + states[state], devicePixelRatioF());
  };
  button->SetPicMouseUpOff(picture(0));
  button->SetPicMouseOverOff(picture(1));
  button->SetPicMouseDownOff(picture(2));
  button->SetFontMouseUpOff(Fonts::Tahoma());
  button->SetFontMouseOverOff(Fonts::Tahoma());
  button->SetFontMouseDownOff(Fonts::Tahoma());
  button->SetForeColorMouseDownOff(kWhite);
  if (states[0] == "down") button->SetForeColorMouseUpOff(kWhite);
  button->SetCaption(caption);
  return button;
}

void Gallery::AddPictureButtons() {
  AddHeading(16, 116, "ngBtn: live; as over; as pressed");
  struct Row {
    const char* name;
    const char* caption;
  };
  int x = 16;
  for (const Row& row : {Row{"install", "Install"}, Row{"options", "Optionen"},
                         Row{"help", "Hilfe"}, Row{"about", "Über"}, Row{"exit", "Ende"}}) {
    ngBtn* const live = AddPictureButton(x, 136, row.name, row.caption, {"up", "over", "down"});
    live->setFocusPolicy(Qt::StrongFocus);
    live->SetHasFocusRect(true);
    live->SetFocusDistance(3);
    AddPictureButton(x, 171, row.name, row.caption, {"over", "over", "down"});
    AddPictureButton(x, 206, row.name, row.caption, {"down", "over", "down"});
    x += 93;
  }
}

void Gallery::AddBars() {
  AddHeading(500, 12, "tc_PBar: 0, 33.33, 46.50, 100 per cent, live");
  int y = 32;
  for (const int value : {0, 3333, 4650, 10000}) {
    auto* const bar = new tc_PBar(this);
    bar->setGeometry(500, y, 215, 15);
    bar->SetMax(10000);
    bar->SetValue(static_cast<std::int16_t>(value));
    y += 20;
  }
  liveBar_ = new tc_PBar(this);
  liveBar_->setGeometry(500, y, 215, 15);
  connect(&tmrBar_, &QTimer::timeout, this, [this] {
    const int next = liveBar_->Value() + 1;
    liveBar_->SetValue(static_cast<std::int16_t>(next > liveBar_->Max() ? 0 : next));
  });
  tmrBar_.start(kBarTick);
}

void Gallery::AddScrollers() {
  AddHeading(500, 136, "CtrlScroller: horizontal; vertical, with Snap, as held");
  const auto add = [this](const QString& direction, int x, int y, bool snap, int max) {
    const qreal ratio = devicePixelRatioF();
    auto* const scroller = new CtrlScroller(this);
    scroller->SetVertical(direction == "v");
    scroller->SetSnap(snap);
    scroller->SetScrollBefore(Skin::Picture("scroll_" + direction + "_before", ratio));
    scroller->SetScrollAfter(Skin::Picture("scroll_" + direction + "_after", ratio));
    scroller->SetBar(Skin::Picture("scroll_" + direction + "_bar", ratio));
    scroller->SetBarOver(Skin::Picture("scroll_" + direction + "_bar_over", ratio));
    scroller->move(x, y);
    scroller->SetMax(max);
    scroller->SetValue(max * 2 / 5);
    return scroller;
  };
  scroller_ = add("h", 500, 160, false, 100);
  add("v", 690, 160, false, 100);
  add("v", 720, 160, true, 5);
  // As it looks while it is held.
  CtrlScroller* const held = add("v", 750, 160, false, 100);
  held->SetBar(held->BarOver());
  auto* const bar = new tc_PBar(this);
  bar->setGeometry(500, 190, 160, 15);
  bar->SetValue(static_cast<std::int16_t>(scroller_->Value()));
  connect(scroller_, &CtrlScroller::Change, bar,
          [this, bar] { bar->SetValue(static_cast<std::int16_t>(scroller_->Value())); });
}

void Gallery::AddPictures() {
  struct Place {
    const char* name;
    int x;
    int y;
  };
  for (const Place& place : {Place{"no_picture", 16, 302}, Place{"panel_options", 466, 346},
                             Place{"panel_progress", 466, 446}}) {
    auto* const label = new QLabel(this);
    label->setPixmap(Skin::Picture(place.name, devicePixelRatioF()));
    label->move(place.x, place.y);
    label->lower();
  }
  AddHeading(16, 282, "The skin: no picture, pages of the panel, title, splash");
  connect(&tmrTile_, &QTimer::timeout, this, [this] {
    tile_ = (tile_ + 1) % kTileWidth;
    update(kSplash);
  });
  tmrTile_.start(kTick);
}

void Gallery::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const qreal ratio = devicePixelRatioF();
  if (tilePicture_.isNull()) {
    tilePicture_ = Skin::Picture("title_tile", ratio);
    title_ = Skin::WithoutMagenta(Skin::Picture("splash_title", ratio));
    logo_ = Skin::WithoutMagenta(Skin::Picture("logo", ratio));
  }

  // The head of the main window: a row of tiles with the logo on it.
  for (int x = 466; x < width() - 16; x += kTileWidth) {
    painter.setClipRect(466, 552, width() - 16 - 466, kTileHeight);
    painter.drawPixmap(x, 552, tilePicture_);
  }
  painter.drawPixmap(474, 556, logo_);

  // The splash: two rows of tiles that drift to the right under a title that stands still.
  painter.setClipRect(kSplash);
  painter.fillRect(kSplash, Colours::ToQColor(kPanel));
  for (int x = tile_ - kTileWidth; x < kSplash.width() + kTileWidth; x += kTileWidth) {
    painter.drawPixmap(kSplash.left() + x, kSplash.top(), tilePicture_);
    painter.drawPixmap(kSplash.left() + x - 7, kSplash.top() + kTileHeight, tilePicture_);
  }
  painter.drawPixmap(kSplash.left() + 12, kSplash.top() + 4, title_);
}
