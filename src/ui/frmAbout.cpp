#include "ui/frmAbout.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextFrame>
#include <algorithm>
#include <string>

#include "controls/Colours.h"
#include "controls/Fonts.h"
#include "controls/SkinLooks.h"
#include "controls/SkinScrollBar.h"
#include "controls/Twips.h"
#include "controls/skinBtn.h"
#include "core/BuildConfig.h"
#include "core/basDebugLog.h"
#include "platform/Shell.h"
#include "platform/window/DelWindowCaption.h"
#include "ui/LegalNotice.h"

namespace {

constexpr ColourNumber kForm = 10784648;
constexpr ColourNumber kField = 11904415;
constexpr ColourNumber kRole = 14999516;
constexpr ColourNumber kNoticeField = 6050376;  // dark: its text is small and white
constexpr ColourNumber kNoticeSelection = 10784648;
constexpr int kFormHeight = 6520;  // twips
constexpr int kTitlePixels = 13;

// In the form.
constexpr QRect kTitle(16, 149, 588, 22);
constexpr QRect kTop(16, 182, 588, 84);
constexpr QRect kBottom(16, 280, 588, 130);
// In the upper field.
constexpr QRect kLeadRole(16, 10, 260, 14);
constexpr QRect kLead(16, 28, 260, 19);
constexpr QRect kProgramRole(312, 10, 260, 14);
constexpr QRect kProgram(312, 28, 260, 19);
constexpr QRect kThanks(312, 53, 260, 19);
// In the lower field.
constexpr QRect kNoticeCaption(16, 4, 556, 14);
constexpr QRect kNotice(16, 22, 568, 104);  // eight lines
constexpr int kLineHeight = 13;
constexpr int kNoticeMargin = 6;

QWidget* MakeField(QWidget* form, const char* name, const QRect& box) {
  auto* const field = new QWidget(form);
  field->setObjectName(name);
  field->setGeometry(box);
  field->setAutoFillBackground(true);
  QPalette colours = field->palette();
  colours.setColor(QPalette::Window, Colours::ToQColor(kField));
  field->setPalette(colours);
  // A press on a field isn't one on the form.
  field->setAttribute(Qt::WA_NoMousePropagation);
  return field;
}

SkinLabel* MakeRole(QWidget* field, const char* name, const QRect& box, const QString& text) {
  auto* const label = new SkinLabel(field, name, box, text);
  label->SetForeColor(Colours::ToQColor(kRole));
  return label;
}

skinBtn* MakeCredit(QWidget* field, const char* name, const QRect& box, const QString& caption) {
  auto* const button = new skinBtn(field);
  button->setObjectName(name);
  button->setGeometry(box);
  button->SetCaption(caption);
  SkinLooks::ApplyWindowLook(*button);
  button->SetDrawFocusRect(true);
  return button;
}

void PrepareNotice(QTextEdit& box) {
  box.setObjectName("txtRecht");
  box.setGeometry(kNotice);
  box.setFrameShape(QFrame::NoFrame);
  box.setFont(Fonts::Tahoma());
  box.setReadOnly(true);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.setTabChangesFocus(true);
  box.document()->setDocumentMargin(0);
  box.setPlainText(LegalNotice());
  QTextFrameFormat sides = box.document()->rootFrame()->frameFormat();
  sides.setLeftMargin(kNoticeMargin);
  box.document()->rootFrame()->setFrameFormat(sides);
  QTextCursor all(box.document());
  all.select(QTextCursor::Document);
  QTextBlockFormat lines;
  lines.setLineHeight(kLineHeight, QTextBlockFormat::FixedHeight);
  all.mergeBlockFormat(lines);
  box.verticalScrollBar()->setSingleStep(kLineHeight);
  box.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  SkinScrollBar::Apply(*box.verticalScrollBar());
  SkinLooks::SetTextColours(box, kNoticeField, Qt::white);
  QPalette colours = box.palette();
  colours.setColor(QPalette::Highlight, Colours::ToQColor(kNoticeSelection));
  box.setPalette(colours);
}

}  // namespace

frmAbout::frmAbout(QWidget* owner, ShellOpener& shell)
    : SkinPage(owner, "frmAbout", "about"),
      lblKvpk(new SkinLabel(this, "lblKvpk", kTitle,
                            "KELVO " KELVO_VERSION ": Modpacks für GTA San Andreas")),
      picTop(MakeField(this, "picTop", kTop)),
      lblProjektleitung(MakeRole(picTop, "lblProjektleitung", kLeadRole, "Projektleitung:")),
      lblProgrammierung(MakeRole(picTop, "lblProgrammierung", kProgramRole, "Programmierung:")),
      cmdCredit1(MakeCredit(picTop, "cmdCredit1", kLead, "Das Projekt im Web")),
      cmdCredit2(MakeCredit(picTop, "cmdCredit2", kProgram, "Das Team im Web")),
      cmdCredit3(MakeCredit(picTop, "cmdCredit3", kThanks, "Dank an alle Helfer")),
      picBotom(MakeField(this, "picBotom", kBottom)),
      lblRecht(new SkinLabel(picBotom, "lblRecht", kNoticeCaption, "Rechtliches:")),
      txtRecht(new QTextEdit(picBotom)),
      shell_(shell) {
  setWindowFlags(Qt::Dialog);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle("Über KVPKI");
  QPalette colours = palette();
  colours.setColor(QPalette::Window, Colours::ToQColor(kForm));
  setPalette(colours);
  QFont title = Fonts::Tahoma(kTitlePixels);
  title.setBold(true);
  lblKvpk->setFont(title);
  lblKvpk->setAlignment(Qt::AlignHCenter);
  lblKvpk->setAttribute(Qt::WA_NoMousePropagation);  // nor is a press on the title
  PrepareNotice(*txtRecht);
  txtRecht->setAccessibleName(lblRecht->text());
  connect(cmdCredit1, &skinBtn::Click, this, &frmAbout::cmdCredit1_Click);
  connect(cmdCredit2, &skinBtn::Click, this, &frmAbout::cmdCredit2_Click);
  connect(cmdCredit3, &skinBtn::Click, this, &frmAbout::cmdCredit3_Click);
  Form_Load();
}

void frmAbout::Form_Load() {
  Trapped("frmAbout.Form_Load", [&] {
    DelWindowCaption(this);
    setFixedSize(width(), ToPixels(kFormHeight));
    PlaceOverOwner();
  });
}

void frmAbout::PlaceOverOwner() {
  if (parentWidget() == nullptr) return;
  const QRect owner = parentWidget()->window()->frameGeometry();
  const QRect desk = parentWidget()->screen()->availableGeometry();
  QRect place = rect();
  place.moveCenter(owner.center());
  place.moveLeft(std::max(desk.left(), std::min(place.left(), desk.right() + 1 - width())));
  place.moveTop(std::max(desk.top(), std::min(place.top(), desk.bottom() + 1 - height())));
  move(place.topLeft());
}

bool frmAbout::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) {
    Trapped("frmAbout.Form_Deactivate", [&] { close(); });
  }
  return SkinPage::event(event);
}

void frmAbout::mousePressEvent(QMouseEvent* event) {
  Trapped("frmAbout.Form_MouseDown", [&] {
    if (event->button() == Qt::LeftButton) close();
  });
}

void frmAbout::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    SkinPage::keyPressEvent(event);
  }
}

void frmAbout::Open(std::string_view address) {
  shell_.Open(std::string(address), "");
}

void frmAbout::cmdCredit1_Click() {
  Trapped("frmAbout.cmdCredit1_Click", [&] { Open(BuildConfig::kAboutUrl1); });
}

void frmAbout::cmdCredit2_Click() {
  Trapped("frmAbout.cmdCredit2_Click", [&] { Open(BuildConfig::kAboutUrl2); });
}

void frmAbout::cmdCredit3_Click() {
  Trapped("frmAbout.cmdCredit3_Click", [&] { Open(BuildConfig::kAboutUrl3); });
}
