#include "frmMain.h"

#include "appearance.h"
#include "buttons.h"
#include "catalogue.h"
#include "combo_box.h"
#include "frmBingo.h"
#include "frmMain_design.h"
#include "frmVoices.h"
#include "label.h"
#include "menu_bar.h"
#include "rich_text_box.h"
#include "screen_awake.h"
#include "screen_reader.h"
#include "sp_voice.h"
#include "text_box.h"

#include <QCoreApplication>
#include <QTimer>

#include <map>
#include <utility>

using controls::control;

frmMain::frmMain(voice::VoiceChoice &voice, QWidget *parent)
    : QMainWindow(parent)
    , m_announcement(voice)
    , m_voiceChoice(voice)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral(VELLOMIR_NAME));
    m_reader = new controls::ScreenReader(this);
    buildMenus();
    buildControls();
    setUpDisplays();
    setTabOrderOfDesign();
    Timer1 = buildTimer("Timer1", 100);
    Timer2 = buildTimer("Timer2", 1000);
    m_naming = buildTimer("naming", 100);
    m_naming->setSingleShot(true);
    m_afterCall = buildTimer("afterCall", 30 * 60 * 1000);
    m_afterCall->setSingleShot(true);
    wire();
    Form_Load();
}

frmMain::~frmMain()
{
    os::keepScreenOn(false);
    m_menuBar->disconnect(this); // from here on the focus moves without the game
}

void frmMain::buildControls()
{
    m_client = new QWidget(this);
    m_client->setObjectName(QStringLiteral("client"));
    setCentralWidget(m_client);
    controls::buildDesign(mainDesign::rows(), m_client);
    findControls();
    fillBoxes();
    nameControls();
    for (int i = 1; i <= patterns::patternCount; ++i) {
        QWidget *button = controls::buildControl(mainDesign::patternButton(i), m_client);
        button->setObjectName(QStringLiteral("cDemoButt(%1)").arg(i));
        cDemoButt[i] = static_cast<QPushButton *>(button);
    }
    cPause->setEnabled(false);
    Text1->setSeeThrough(true);
    // Keys act as they are pressed. An input method would hold R back, or make another letter of it.
    Text1->setAttribute(Qt::WA_InputMethodEnabled, false);
    Text1->raise();
}

void frmMain::findControls()
{
    cButt[1] = control<controls::ColorButton>(m_client, "cButt(1)");
    RTB1 = control<controls::RichTextBox>(m_client, "RTB1");
    RTB2 = control<controls::RichTextBox>(m_client, "RTB2");
    RTB3 = control<controls::RichTextBox>(m_client, "RTB3");
    RTB4 = control<controls::RichTextBox>(m_client, "RTB4");
    RTB5 = control<controls::RichTextBox>(m_client, "RTB5");
    lblCallCnt = control<controls::Label>(m_client, "lblCallCnt");
    lblAutoCall = control<controls::Label>(m_client, "lblAutoCall");
    Text1 = control<controls::TextBox>(m_client, "Text1");
    iFontSize = control<controls::ComboBox>(m_client, "iFontSize");
    cboSec = control<controls::ComboBox>(m_client, "cboSec");
    cmdClear = control<QPushButton>(m_client, "cmdClear");
    cRandNum = control<QPushButton>(m_client, "cRandNum");
    cPause = control<QPushButton>(m_client, "cPause");
    cBingo = control<QPushButton>(m_client, "cBingo");
    chkAutoCall = control<QCheckBox>(m_client, "chkAutoCall");
    chkMakeVoiceCall = control<QCheckBox>(m_client, "chkMakeVoiceCall");
}

void frmMain::fillBoxes()
{
    for (const int size : {20, 22, 24, 28, 30, 32, 34, 36, 38, 40, 42, 44, 46, 48, 50, 52})
        iFontSize->addItem(QString::number(size));
    iFontSize->setEditText(QString::fromLatin1(mainDesign::row("iFontSize").caption));
    for (const int seconds : {5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 20})
        cboSec->addItem(QString::number(seconds));
}

/// Names what has no caption of its own, for screen readers.
void frmMain::nameControls()
{
    // clang-format off
    const std::pair<const char *, const char *> names[] = {
        {"Frame1", "Pattern card"},                  {"Frame2", "Patterns"},
        {"RTB1", "Column letters of the board"},     {"RTB2", "Called numbers"},
        {"RTB3", "Current number"},                  {"RTB4", "Past numbers"},
        {"RTB5", "Column letters of the buttons"},   {"Text1", "Number to call"},
        {"cboSec", "Seconds between automatic draws"}, {"iFontSize", "Font size"},
    };
    // clang-format on
    for (const auto &[name, spoken] : names)
        control<QWidget>(m_client, name)->setAccessibleName(QString::fromLatin1(spoken));
    iFontSize->lineEdit()->setAccessibleName(iFontSize->accessibleName());
    control<QLabel>(m_client, "Label4")->setBuddy(iFontSize);
    control<QLabel>(m_client, "Label3")->setBuddy(cboSec);
}

void frmMain::buildMenus()
{
    const auto menu = [this](const char *name, const char *caption) {
        QMenu *made = menuBar()->addMenu(QString::fromLatin1(caption));
        made->setObjectName(QString::fromLatin1(name));
        made->menuAction()->setObjectName(QString::fromLatin1(name));
        return made;
    };
    const auto item = [](QMenu *in, const char *name, const char *caption) {
        QAction *made = in->addAction(QString::fromLatin1(caption));
        made->setObjectName(QString::fromLatin1(name));
        return made;
    };
    m_menuBar = new controls::MenuBar(this);
    setMenuBar(m_menuBar);
    QMenu *mnuFile = menu("mnuFile", "File");
    mnuSpeak = item(mnuFile, "mnuSpeak", "Voice Options");
    mnuShaddow = item(mnuFile, "mnuShaddow", "Shaddow Buttons");
    mnuShaddow->setCheckable(true);
    mnuShaddow->setChecked(true);
    mnuExit = item(mnuFile, "mnuExit", "E&xit");
    QMenu *mnuHelp2 = menu("mnuHelp2", "Help");
    mnuHelp = item(mnuHelp2, "mnuHelp", "Help");
    mnuAbout = item(mnuHelp2, "mnuAbout", "About");
}

QTimer *frmMain::buildTimer(const char *name, int milliseconds)
{
    auto *timer = new QTimer(this);
    timer->setObjectName(QString::fromLatin1(name));
    timer->setInterval(milliseconds);
    timer->setTimerType(Qt::PreciseTimer); // a coarse timer drifts by seconds in an evening
    return timer;
}

void frmMain::setUpDisplays()
{
    for (controls::RichTextBox *display : {RTB1, RTB2, RTB3, RTB4, RTB5})
        display->setBackColor(controls::colors::buttonFace);
    RTB2->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    RTB2->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    RTB2->setLineWrapMode(QTextEdit::NoWrap); // a board that is too wide scrolls
    RTB1->followScrolling(RTB2);
    RTB4->setWordWrapMode(QTextOption::WordWrap);
}

void frmMain::setTabOrderOfDesign()
{
    std::map<int, QWidget *> stops;
    for (const controls::DesignRow &row : mainDesign::rows()) {
        if (row.tab >= 0)
            stops[row.tab] = control<QWidget>(m_client, row.name);
    }
    for (int i = 1; i <= patterns::patternCount; ++i)
        stops[mainDesign::patternButton(i).tab] = cDemoButt[i];
    QWidget *before = nullptr;
    for (const auto &[tab, widget] : stops)
        setTabOrder(std::exchange(before, widget), widget);
}
