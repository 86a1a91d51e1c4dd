#include "controls/Colours.h"

#include <algorithm>
#include <array>

#include "controls/Twips.h"

namespace {

struct SystemColour {
  int index;
  QPalette::ColorRole role;
  QPalette::ColorGroup group;
};

// The indices of GetSysColor and the palette's roles that stand for them.
constexpr std::array<SystemColour, 30> kSystemColours = {{
    {0, QPalette::Mid, QPalette::Active},               // scroll bar
    {1, QPalette::Dark, QPalette::Active},              // desktop
    {2, QPalette::Highlight, QPalette::Active},         // caption of the active window
    {3, QPalette::Mid, QPalette::Active},               // caption of other windows
    {4, QPalette::Window, QPalette::Active},            // menu
    {5, QPalette::Base, QPalette::Active},              // window
    {6, QPalette::Shadow, QPalette::Active},            // window frame
    {7, QPalette::WindowText, QPalette::Active},        // menu text
    {8, QPalette::Text, QPalette::Active},              // window text
    {9, QPalette::HighlightedText, QPalette::Active},   // text of the active caption
    {10, QPalette::Window, QPalette::Active},           // border of the active window
    {11, QPalette::Window, QPalette::Active},           // border of other windows
    {12, QPalette::Dark, QPalette::Active},             // application workspace
    {13, QPalette::Highlight, QPalette::Active},        // selection
    {14, QPalette::HighlightedText, QPalette::Active},  // text of the selection
    {15, QPalette::Button, QPalette::Active},           // face of buttons
    {16, QPalette::Dark, QPalette::Active},             // shadow of buttons
    {17, QPalette::Text, QPalette::Disabled},           // disabled text
    {18, QPalette::ButtonText, QPalette::Active},       // text of buttons
    {19, QPalette::Text, QPalette::Disabled},           // text of other captions
    {20, QPalette::Light, QPalette::Active},            // lit edge of buttons
    {21, QPalette::Shadow, QPalette::Active},           // dark shadow of buttons
    {22, QPalette::Midlight, QPalette::Active},         // light edge of buttons
    {23, QPalette::ToolTipText, QPalette::Active},      // text of tool tips
    {24, QPalette::ToolTipBase, QPalette::Active},      // tool tips
    {26, QPalette::Link, QPalette::Active},             // hot items
    {27, QPalette::Highlight, QPalette::Active},        // far end of the active caption
    {28, QPalette::Mid, QPalette::Active},              // far end of other captions
    {29, QPalette::Highlight, QPalette::Active},        // selection in menus
    {30, QPalette::Window, QPalette::Active},           // menu bar
}};

constexpr unsigned kSystemBits = 0x7FFFFFFFU;
constexpr int kFullChannel = 255;
constexpr int kShiftGreen = 8;
constexpr int kShiftBlue = 16;

int Channel(ColourNumber colour, int shift) {
  return static_cast<int>((static_cast<unsigned>(colour) >> static_cast<unsigned>(shift)) &
                          unsigned{kFullChannel});
}

}  // namespace

namespace Colours {

ColourNumber GetSysColor(int index, const QPalette& palette) {
  const auto found = std::find_if(kSystemColours.begin(), kSystemColours.end(),
                                  [&](const SystemColour& row) { return row.index == index; });
  if (found == kSystemColours.end()) return 0;
  return FromQColor(palette.color(found->group, found->role));
}

QColor ToQColor(ColourNumber colour, const QPalette& palette) {
  if (colour < 0) {
    colour = GetSysColor(static_cast<int>(static_cast<unsigned>(colour) & kSystemBits), palette);
  }
  return {Channel(colour, 0), Channel(colour, kShiftGreen), Channel(colour, kShiftBlue)};
}

ColourNumber FromQColor(const QColor& colour) {
  return colour.red() | (colour.green() << kShiftGreen) | (colour.blue() << kShiftBlue);
}

ColourNumber CalcMiddleColor(ColourNumber Color1, ColourNumber Color2, std::int16_t Percent) {
  const ColourNumber first = FromQColor(ToQColor(Color1));
  const ColourNumber second = FromQColor(ToQColor(Color2));
  ColourNumber mixed = 0;
  for (const int shift : {0, kShiftGreen, kShiftBlue}) {
    const auto [low, high] = std::minmax({Channel(first, shift), Channel(second, shift)});
    const int channel = RoundToEven(low + (high - low) * Percent / 100.0);
    mixed |= std::clamp(channel, 0, kFullChannel) << shift;  // a percentage may lie outside 0..100
  }
  return mixed;
}

}  // namespace Colours
