#include "windows/frmAbout.h"

#include "platform/appearance.h"
#include "platform/browser.h"
#include "platform/controls.h"
#include "platform/tool_window.h"
#include "platform/units.h"
#include "publisher.h"
#include "windows/frmAbout_design.h"

using platform::control;

frmAbout::frmAbout(QWidget *owner)
    : QWidget(owner)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About"));
    platform::makeToolWindow(this);
    buildControls();
    setCaptions();
    Form_Load();
}

void frmAbout::buildControls()
{
    platform::buildDesign(aboutDesign::controls(), this);
    setFixedSize(platform::pixels(aboutDesign::clientWidth, logicalDpiX()),
                 platform::pixels(aboutDesign::clientHeight, logicalDpiX()));
    for (const auto &[label, points] : aboutDesign::labelFonts())
        control<QWidget>(this, label)->setFont(platform::sansFont(points, true));
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
        {"Label1", "Vellomir"},        {"Label2", "Version " VELLOMIR_VERSION},
        {"Label3", publisher::name},   {"Label4", publisher::street},
        {"Label5", publisher::town},   {"Label6", publisher::telephone},
        {"Label7", publisher::rights},
    };
    for (const auto &[label, caption] : captions)
        control<platform::Label>(this, label)->setCaption(QString::fromUtf8(caption));
}

void frmAbout::Form_Load()
{
    platform::centreOnScreen(this);
}

void frmAbout::cOK_Click()
{
    close();
}

void frmAbout::cGoTo_Click()
{
    platform::openAddress(QString::fromUtf8(publisher::address));
}
