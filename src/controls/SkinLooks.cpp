#include "controls/SkinLooks.h"

#include <QPalette>
#include <QWidget>

#include "controls/skinBtn.h"

namespace {

// Colours of the normal look, under the mouse, and pressed.
struct ThreeColours {
  ColourNumber normal;
  ColourNumber over;
  ColourNumber down;
};

constexpr ThreeColours kWindowBack = {10784648, 12957875, 6050376};
constexpr ThreeColours kWindowFore = {0, 0, 16777215};
constexpr ThreeColours kTabBack = {11904415, 14999516, 12957875};
constexpr ThreeColours kTabFore = {0, 0, 0};
constexpr ThreeColours kLinkFore = {14999516, 16711680, 255};
constexpr ThreeColours kFrame = {4336663, 3656959, 16777215};
constexpr ColourNumber kSelection = 6050376;

void SetBack(skinBtn& button, const ThreeColours& colours) {
  button.SetBackColorNormal(colours.normal);
  button.SetBackColorMouseMove(colours.over);
  button.SetBackColorMouseDown(colours.down);
}

void SetFore(skinBtn& button, const ThreeColours& colours) {
  button.SetForeColorNormal(colours.normal);
  button.SetForeColorMouseMove(colours.over);
  button.SetForeColorMouseDown(colours.down);
}

void SetFrame(skinBtn& button) {
  button.SetFrameColorNormal(kFrame.normal);
  button.SetFrameColorMouseMove(kFrame.over);
  button.SetFrameColorMouseDown(kFrame.down);
  button.SetFrameWidthNormal(1);
  button.SetFrameWidthMouseOver(1);
  button.SetFrameWidthMouseDown(1);
}

// `fill` and `border` are 1 for yes and 0 for no.
void SetStyles(skinBtn& button, int fill, int border) {
  button.SetBackStyleNormal(fill);
  button.SetBackStyleMouseMove(fill);
  button.SetBackStyleMouseDown(fill);
  button.SetBorderStyleNormal(border);
  button.SetBorderStyleMouseMove(border);
  button.SetBorderStyleMouseDown(border);
}

void Show(skinBtn& button) {
  button.Resize();
  button.Normal(true);
}

void ApplyFilledLook(skinBtn& button, const ThreeColours& back, const ThreeColours& fore) {
  SetBack(button, back);
  SetFore(button, fore);
  SetFrame(button);
  SetStyles(button, 1, 1);
  Show(button);
}

}  // namespace

namespace SkinLooks {

void ApplyWindowLook(skinBtn& button) {
  ApplyFilledLook(button, kWindowBack, kWindowFore);
}

void ApplyTabLook(skinBtn& button) {
  ApplyFilledLook(button, kTabBack, kTabFore);
}

void ApplyLinkLook(skinBtn& button) {
  SetFore(button, kLinkFore);
  SetFrame(button);
  SetStyles(button, 0, 0);
  button.SetShadowVisible(false);
  button.SetShadowDistance(0);  // which the caption would make room for
  Show(button);
}

void SetFont(skinBtn& button, const QFont& font) {
  button.SetFontNormal(font);
  button.SetFontMouseMove(font);
  button.SetFontMouseDown(font);
}

void SetTextColours(QWidget& text, ColourNumber back, const QColor& fore) {
  QPalette colours = text.palette();
  colours.setColor(QPalette::Base, Colours::ToQColor(back));
  colours.setColor(QPalette::Text, fore);
  colours.setColor(QPalette::Highlight, Colours::ToQColor(kSelection));
  colours.setColor(QPalette::HighlightedText, Qt::white);
  text.setPalette(colours);
}

}  // namespace SkinLooks
