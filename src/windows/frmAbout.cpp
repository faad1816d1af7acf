#include "frmAbout.h"

#include "appearance.h"
#include "frmAbout_design.h"
#include "label.h"
#include "publisher.h"
#include "tool_window.h"
#include "units.h"

#include <QPushButton>
#include <QDesktopServices>
#include <QUrl>

using controls::control;

frmAbout::frmAbout(QWidget *owner)
    : QWidget(owner)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About"));
    controls::makeToolWindow(this);
    buildControls();
    setCaptions();
    Form_Load();
}

void frmAbout::buildControls()
{
    controls::buildDesign(aboutDesign::controls(), this);
    setFixedSize(controls::pixels(aboutDesign::clientWidth, logicalDpiX()),
                 controls::pixels(aboutDesign::clientHeight, logicalDpiX()));
    for (const auto &[label, points] : aboutDesign::labelFonts())
        control<QWidget>(this, label)->setFont(controls::sansFont(points, true));
    connect(control<QPushButton>(this, "cOK"), &QPushButton::clicked, this, &frmAbout::cOK_Click);
    connect(control<QPushButton>(this, "cGoTo"), &QPushButton::clicked, this, &frmAbout::cGoTo_Click);
    control<QPushButton>(this, "cOK")->setFocus();
}

void frmAbout::setCaptions()
{
    const struct
    {
        const char *label;
        const char *caption;
    } captions[] = {
        {"Label1", VELLOMIR_NAME},        {"Label2", "Version " VELLOMIR_VERSION},
        {"Label3", publisher::name},   {"Label4", publisher::street},
        {"Label5", publisher::town},   {"Label6", publisher::telephone},
        {"Label7", publisher::rights},
    };
    for (const auto &[label, caption] : captions)
        control<controls::Label>(this, label)->setCaption(QString::fromUtf8(caption));
}

void frmAbout::Form_Load()
{
    controls::centreOnScreen(this);
}

void frmAbout::cOK_Click()
{
    close();
}

void frmAbout::cGoTo_Click()
{
    QDesktopServices::openUrl(QUrl(QString::fromUtf8(publisher::address)));
}
