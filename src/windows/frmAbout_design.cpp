#include "frmAbout_design.h"

using controls::DesignRow;
using controls::Kind;

namespace {

// clang-format off
constexpr DesignRow design[] = {
    // kind              name      caption           left   top  width height  tab
    {Kind::CentredLabel, "Label1", "Vellomir",       1440,  240,  1665,   300,   0},
    {Kind::CentredLabel, "Label2", "",               1215,  720,  2115,   300,   1},
    {Kind::Label,        "Label3", "",                120, 1320,  2535,   240,   2},
    {Kind::Label,        "Label4", "",                120, 1560,  1860,   195,   3},
    {Kind::Label,        "Label5", "",                120, 1800,  2010,   195,   4},
    {Kind::Label,        "Label6", "",                120, 2040,  1080,   195,   5},
    {Kind::PushButton,   "cOK",    "Ok",             3000, 1440,  1335,   255,   7},
    {Kind::PushButton,   "cGoTo",  "Go To Website",  3000, 1920,  1335,   255,   8},
    {Kind::Line,         "Line1",  "",                360, 2835,  4080,    15,  -1},
    {Kind::Label,        "Label7", "",               1185, 3075,  2325,   195,   6},
};

constexpr aboutDesign::LabelFont fonts[] = {
    {"Label1", 12.0}, {"Label2", 12.0}, {"Label3", 9.75},
};
// clang-format on

} // namespace

namespace aboutDesign {

std::span<const DesignRow> controls()
{
    return design;
}

std::span<const LabelFont> labelFonts()
{
    return fonts;
}

} // namespace aboutDesign
