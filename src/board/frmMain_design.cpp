#include "frmMain_design.h"

#include "catalogue.h"

#include <algorithm>
#include <cstring>
#include <utility>

using controls::DesignRow;
using controls::Kind;

// clang-format off
constexpr DesignRow design[] = {
    // kind               name                caption              left    top  width height  tab  container
    {Kind::ColorButton,   "cButt(1)",         "1",                  420,   420,   360,   360,   1},
    {Kind::Display,       "RTB5",             "B",                  105,   420,   255,  2025,  34},
    {Kind::Label,         "Label1",           "CURRENT NUMBER",    6645,   210,  1545,   195,  -1},
    {Kind::Display,       "RTB3",             "075",               6645,   420,  3525,  1980,   6},
    {Kind::Label,         "Label2",           "PAST NUMBERS",     10290,   210,  1275,   195,  -1},
    {Kind::Display,       "RTB4",             "N48 G50 I75 N48",  10290,   420,  3495,  1980,   7},
    {Kind::Frame,         "Frame2",           "",                 13965,   105,  2775,  2295,  -1},
    {Kind::Frame,         "Frame1",           "",                 16800,   105,  2205,  2370,  -1},
    {Kind::ColorBox,      "tDemo(1)",         "",                     0,     0,   425,   450,  11, "Frame1"},
    {Kind::TextBox,       "Text1",            "",                 18360,   690,   495,   285,   0},
    {Kind::Label,         "Label4",           "Font Size",          105,  2580,   660,   195,  -1},
    {Kind::EditableCombo, "iFontSize",        "33",                 840,  2520,   630,   315,   2},
    {Kind::PushButton,    "cmdClear",         "Clear Board",       1545,  2550,  1155,   255,   3},
    {Kind::PushButton,    "cRandNum",         "Random Call",       2775,  2550,  1155,   255,  35},
    {Kind::CheckBox,      "chkAutoCall",      "Auto Draw Every",   4020,  2580,  1590,   195,  36},
    {Kind::DropDownList,  "cboSec",           "",                  5580,  2520,   645,   315,  37},
    {Kind::Label,         "Label3",           "Seconds",           6300,  2580,   630,   195,  -1},
    {Kind::CheckBox,      "chkMakeVoiceCall", "Make Voice Calls",  7035,  2565,  1590,   225,  40},
    {Kind::Label,         "lblAutoCall",      "CALL",              8820,  2580,   390,   195,  -1},
    {Kind::Label,         "lblCallCnt",       "Balls Called: 0",  10080,  2580,   990,   195,  -1},
    {Kind::PushButton,    "cPause",           "&Pause",           15540,  2520,  1800,   330,  42},
    {Kind::PushButton,    "cBingo",           "Bingo",            17535,  2520,  1485,   330,  43},
    {Kind::Display,       "RTB1",             "",                   120,  2865,   615,  7095,   5},
    {Kind::Display,       "RTB2",             "",                   720,  2865, 18315,  7095,   4},
};

/// The pattern buttons' places in the tab order.
constexpr int patternTabs[] = {14, 13, 18, 15, 16, 17, 21,
                               19, 20, 22, 23, 24, 25, 26,
                               33, 32, 27, 31, 28, 29, 30};
// clang-format on

constexpr int patternRows = 7;
constexpr int patternPitch = 340;
constexpr int patternHeight = 255;

/// Left edge and width of the three columns of pattern buttons, and of the last button, which is wider.
constexpr std::pair<int, int> patternColumns[] = {{0, 975}, {1080, 1095}, {2400, 375}, {2280, 495}};

namespace mainDesign {

std::span<const DesignRow> rows()
{
    return design;
}

const DesignRow &row(const char *name)
{
    const auto *found = std::find_if(std::begin(design), std::end(design),
                                     [=](const DesignRow &row) { return std::strcmp(row.name, name) == 0; });
    Q_ASSERT(found != std::end(design));
    return *found;
}

DesignRow numberButton(int n)
{
    DesignRow button = row("cButt(1)");
    button.left += (n - 1) % game::numbersPerColumn * (button.width + buttonGap);
    button.top += game::columnOf(n) * (button.height + buttonGap);
    return button;
}

DesignRow patternButton(int index)
{
    const int place = index - 1;
    const auto [left, width] = patternColumns[index == patterns::patternCount ? 3 : place / patternRows];
    return {.kind = Kind::PushButton,
            .name = "cDemoButt",
            .caption = patterns::pattern(index).caption,
            .left = left,
            .top = patternPitch * (place % patternRows),
            .width = width,
            .height = patternHeight,
            .tab = patternTabs[place],
            .container = "Frame2"};
}

} // namespace mainDesign
