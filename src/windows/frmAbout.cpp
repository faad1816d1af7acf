#include "frmAbout.h"

#include "design_table.h"
#include "publisher.h"
#include "tool_window.h"

#include <QDesktopServices>
#include <QPushButton>
#include <QUrl>

using controls::control;
using controls::DesignRow;
using controls::Kind;

constexpr int clientWidth = 4680; // twips
constexpr int clientHeight = 3795;

// clang-format off
constexpr DesignRow design[] = {
    // kind              name      caption                        left   top  width height  tab  container points
    {Kind::CentredLabel, "Label1", VELLOMIR_NAME,                1440,  240,  1665,   300,   0,  nullptr,  12.0},
    {Kind::CentredLabel, "Label2", "Version " VELLOMIR_VERSION,  1215,  720,  2115,   300,   1,  nullptr,  12.0},
    {Kind::Label,        "Label3", publisher::name,               120, 1320,  2535,   240,   2,  nullptr,  9.75},
    {Kind::Label,        "Label4", publisher::street,             120, 1560,  1860,   195,   3},
    {Kind::Label,        "Label5", publisher::town,               120, 1800,  2010,   195,   4},
    {Kind::Label,        "Label6", publisher::telephone,          120, 2040,  1080,   195,   5},
    {Kind::PushButton,   "cOK",    "Ok",                         3000, 1440,  1335,   255,   7},
    {Kind::PushButton,   "cGoTo",  "Go To Website",              3000, 1920,  1335,   255,   8},
    {Kind::Line,         "Line1",  "",                            360, 2835,  4080,    15,  -1},
    {Kind::Label,        "Label7", publisher::rights,            1185, 3075,  2325,   195,   6},
};
// clang-format on

frmAbout::frmAbout(QWidget *owner)
    : QWidget(owner)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About"));
    controls::makeToolWindow(this);
    controls::buildDesign(design, this);
    setFixedSize(controls::pixels(clientWidth), controls::pixels(clientHeight));
    connect(control<QPushButton>(this, "cOK"), &QPushButton::clicked, this, &frmAbout::cOK_Click);
    connect(control<QPushButton>(this, "cGoTo"), &QPushButton::clicked, this, &frmAbout::cGoTo_Click);
    control<QPushButton>(this, "cOK")->setFocus();
}

void frmAbout::Form_Load()
{
    controls::centreOnScreen(this);
}

void frmAbout::cGoTo_Click()
{
    QDesktopServices::openUrl(QUrl(QString::fromUtf8(publisher::address)));
}
