#include "ui/DetailView.h"

#include <QFocusEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <cmath>
#include <utility>

#include "controls/Colours.h"
#include "controls/FocusFrame.h"
#include "controls/Fonts.h"
#include "controls/Skin.h"
#include "controls/SkinLooks.h"
#include "controls/SkinScrollBar.h"
#include "controls/skinBtn.h"
#include "core/basDebugLog.h"
#include "pack/clsIMGtool.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "ui/EngineText.h"
#include "ui/PictureFit.h"
#include "ui/PictureLoader.h"
#include "ui/PictureSurface.h"

namespace {

constexpr QRect kSurface(8, 291, 652, 235);
constexpr QRect kPictureTab(8, 276, 57, 15);
constexpr QRect kDescriptionTab(63, 276, 89, 15);
constexpr ColourNumber kBackground = 12957875;
constexpr int kTextPixels = 11;
constexpr int kTextMargin = 6;
constexpr int kTabStop = 8;  // characters
constexpr int kEnterKey = 13;

QFont LucidaConsole(int pixels) {
  QFont font;
  font.setFamilies({"Lucida Console", "DejaVu Sans Mono", "Liberation Mono", "Noto Sans Mono",
                    "Consolas", "Courier New"});
  font.setStyleHint(QFont::Monospace);
  font.setPixelSize(pixels);
  return font;
}

// The file that an entry of that name is exported to. Another name than a plain one would lead out
// of the temp directory, so no entry can have it.
std::string ExportPath(const std::string& tempDir, const std::string& name) {
  if (!DosPath::IsPlainFileName(name)) {
    Fail("picture \"", name, "\": not the name of an entry that can be exported");
  }
  return DosPath::Join(tempDir, name);
}

QImage ReadPicture(const FileSystem& files, const std::string& path) {
  const File file = files.OpenForReading(path);
  if (file.Size() > PictureLoader::kLargestFile) {
    Fail("picture \"", path, "\": ", file.Size(), " bytes, of which ", PictureLoader::kLargestFile,
         " can be loaded");
  }
  const std::string bytes = file.ReadAt(0, file.Size());
  return PictureLoader::FromBytes(
      QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())), path);
}

QRect OnDevice(const QRect& box, qreal ratio) {
  const QPoint from(qRound(box.x() * ratio), qRound(box.y() * ratio));
  const QPoint to(qRound((box.x() + box.width()) * ratio),
                  qRound((box.y() + box.height()) * ratio));
  return {from, QSize(to.x() - from.x(), to.y() - from.y())};
}

QSize WholePixels(const QSize& size, qreal ratio) {
  return {static_cast<int>(std::ceil(size.width() * ratio)),
          static_cast<int>(std::ceil(size.height() * ratio))};
}

}  // namespace

DetailView::DetailView(QWidget* form, const FileSystem& files, const clsIMGtool& ModPackIMG,
                       const std::string& TempDir, std::function<void()> PlayClick)
    : QObject(form),
      cmdPicture(new skinBtn(form)),
      cmdDescription(new skinBtn(form)),
      picDescPic(new PictureSurface(Colours::ToQColor(kBackground), form)),
      txtDescription(new QPlainTextEdit(picDescPic)),
      files_(files),
      ModPackIMG_(ModPackIMG),
      tempDir_(TempDir),
      playClick_(std::move(PlayClick)) {
  cmdPicture->setObjectName("cmdPicture");
  cmdPicture->setGeometry(kPictureTab);
  PrepareTab(*cmdPicture, "Bild", &DetailView::cmdPicture_MousDown);
  cmdDescription->setObjectName("cmdDescription");
  cmdDescription->setGeometry(kDescriptionTab);
  PrepareTab(*cmdDescription, "Beschreibung", &DetailView::cmdDescription_MousDown);
  picDescPic->setObjectName("picDescPic");
  picDescPic->setGeometry(kSurface);
  picDescPic->setAccessibleName(cmdPicture->Caption());
  connect(picDescPic, &PictureSurface::RatioChanged, this,
          [this](qreal ratio) { Trapped("frmMain.picDescPic_Paint", [&] { ShowFitted(ratio); }); });
  PrepareText();
}

// The tab of the view that isn't shown takes its press by itself. A click that came without one, by
// Enter or from a screen reader, serves as the press.
void DetailView::PrepareTab(skinBtn& tab, const QString& caption, void (DetailView::*show)()) {
  tab.SetCaption(caption);
  tab.SetTab(true);
  SkinLooks::SetFont(tab, Fonts::Tahoma());
  SkinLooks::ApplyTabLook(tab);
  tab.SetShadowDistance(1);
  tab.SetRaiseClickByKeyEvent(false);
  tab.SetDrawFocusRect(true);
  tab.installEventFilter(this);
  connect(&tab, &skinBtn::MousDown, this, show);
  const auto pressUnlessShown = [this, &tab, show] {
    if (tab.AutoDrawButton()) (this->*show)();
  };
  connect(&tab, &skinBtn::Click, this, pressUnlessShown);
  connect(&tab, &skinBtn::KeyPress, this, [pressUnlessShown](std::int16_t KeyAscii) {
    if (KeyAscii == kEnterKey) pressUnlessShown();
  });
}

void DetailView::PrepareText() const {
  QPlainTextEdit& box = *txtDescription;
  box.setObjectName("txtDescription");
  box.setAccessibleName(cmdDescription->Caption());
  box.setFrameShape(QFrame::NoFrame);
  new FocusFrame(&box);
  box.setFont(LucidaConsole(kTextPixels));
  box.setReadOnly(true);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.setUndoRedoEnabled(false);
  box.setTabStopDistance(kTabStop * QFontMetricsF(box.font()).horizontalAdvance('x'));
  box.document()->setDocumentMargin(kTextMargin);
  box.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  box.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  SkinScrollBar::Apply(*box.verticalScrollBar());
  // It looks the same while the panel has the detail area disabled.
  SkinLooks::SetTextColours(box, kBackground, Qt::black);
  box.setGeometry(picDescPic->rect());
  box.hide();
}

void DetailView::SetPicture(const std::string& PictureName) {
  Trapped("frmMain.SetPicture", [&] {
    // The name alone counts, on purpose: a picture of another pack with the same name isn't loaded.
    if (!PictureName.empty() && PictureName != tag_) {
      CurrentPicture_ = PictureFromPack(PictureName);
      tag_ = PictureName;
    } else if (PictureName.empty()) {
      CurrentPicture_ = NoPicture();
      tag_.clear();
    }
    ShowFitted(picDescPic->devicePixelRatioF());
  });
}

DetailView::Loaded DetailView::PictureFromPack(const std::string& name) const {
  const std::string path = ExportPath(tempDir_, name);
  ModPackIMG_.Export(name, path);
  QImage picture = ReadPicture(files_, path);
  files_.Delete(path);
  return {std::move(picture), QImage()};
}

// Not before it is shown: most packs start with a picture of their own.
const DetailView::Loaded& DetailView::NoPicture() {
  if (picNoPicture_.picture.isNull()) {
    picNoPicture_ = {Skin::Picture("no_picture", 1).toImage(),
                     Skin::Picture("no_picture", 2).toImage()};
    picNoPicture_.fine.setDevicePixelRatio(1);
  }
  return picNoPicture_;
}

void DetailView::ShowFitted(qreal ratio) {
  if (CurrentPicture_.picture.isNull()) CurrentPicture_ = NoPicture();
  const QSize surface = picDescPic->size();
  const QRect box = OnDevice(PictureFit::Fit(CurrentPicture_.picture.size(), surface), ratio);
  picBuffer_ = QPixmap(WholePixels(surface, ratio));
  picBuffer_.fill(Colours::ToQColor(kBackground));
  if (!box.isEmpty() && !picBuffer_.isNull()) {
    const bool enlarges = box.width() > CurrentPicture_.picture.width();
    const bool takesFine = enlarges && !CurrentPicture_.fine.isNull();
    const QImage& picture = takesFine ? CurrentPicture_.fine : CurrentPicture_.picture;
    QPainter painter(&picBuffer_);
    painter.drawImage(box,
                      picture.scaled(box.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  }
  picBuffer_.setDevicePixelRatio(ratio);
  picDescPic->SetPicture(picBuffer_);
}

void DetailView::SetDescription(const std::string& text) {
  if (std::exchange(description_, text) == text) return;
  txtDescription->setPlainText(ToQString(text).replace("\r\n", "\n"));
}

void DetailView::cmdPicture_MousDown() {
  Trapped("frmMain.cmdPicture_MousDown", [&] { SwitchTo(false); });
}

void DetailView::cmdDescription_MousDown() {
  Trapped("frmMain.cmdDescription_MousDown", [&] { SwitchTo(true); });
}

void DetailView::SwitchTo(bool toText) {
  skinBtn& shown = toText ? *cmdDescription : *cmdPicture;
  skinBtn& other = toText ? *cmdPicture : *cmdDescription;
  playClick_();
  shown.SetAutoDrawButton(false);
  other.SetAutoDrawButton(true);
  shown.MouseDown();
  other.Normal();
  txtDescription->setVisible(toText);
  ShowFocusOfTabs();
}

bool DetailView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (event->type() == QEvent::FocusIn) {
      tabsByKeyboard_ = FocusFrame::IsByKeyboard(reason, tabsByKeyboard_);
    }
    ShowFocusOfTabs();
  }
  return QObject::eventFilter(watched, event);
}

// The tab of the present view has no focus rectangle, so its caption is underlined.
void DetailView::ShowFocusOfTabs() const {
  for (skinBtn* const tab : {cmdPicture, cmdDescription}) {
    QFont font = Fonts::Tahoma();
    font.setUnderline(tab->hasFocus() && tabsByKeyboard_ && !tab->AutoDrawButton());
    tab->SetFontMouseDown(font);
  }
}
