#include "frmMain.h"

#include "frmMain_design.h"
#include "screen_awake.h"

#include <map>
#include <utility>

using controls::control;

frmMain::frmMain(voice::VoiceChoice &voice)
    : m_announcement(voice)
    , m_voiceChoice(voice)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral(VELLOMIR_NAME));
    buildMenus();
    setCentralWidget(m_client);
    buildPatternButtons();
    setUpControls();
    nameControls();
    setTabOrderOfDesign();
    m_naming->setSingleShot(true);
    m_afterCall->setSingleShot(true);
    wire();
    Form_Load();
}

frmMain::~frmMain()
{
    os::keepScreenOn(false);
    m_menuBar->disconnect(this); // from here on the focus moves without the game
}

QWidget *frmMain::buildClient()
{
    auto *client = new QWidget(this);
    client->setObjectName(QStringLiteral("client"));
    controls::buildDesign(mainDesign::rows(), client);
    return client;
}

void frmMain::buildPatternButtons()
{
    for (int i = 1; i <= patterns::patternCount; ++i) {
        QWidget *button = controls::buildControl(mainDesign::patternButton(i), m_client);
        button->setObjectName(QStringLiteral("cDemoButt(%1)").arg(i));
        cDemoButt[i] = static_cast<QPushButton *>(button);
    }
}

void frmMain::setUpControls()
{
    for (const int size : {20, 22, 24, 28, 30, 32, 34, 36, 38, 40, 42, 44, 46, 48, 50, 52})
        iFontSize->addItem(QString::number(size));
    iFontSize->setEditText(QString::fromLatin1(mainDesign::row("iFontSize").caption));
    for (const int seconds : {5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 20})
        cboSec->addItem(QString::number(seconds));

    cPause->setEnabled(false);
    Text1->setSeeThrough();
    // Keys act as they are pressed. An input method would hold R back, or make another letter of it.
    Text1->setAttribute(Qt::WA_InputMethodEnabled, false);
    Text1->raise();

    RTB2->setLineWrapMode(QTextEdit::NoWrap); // a board that is too wide scrolls
    RTB1->followScrolling(RTB2);
    RTB4->setWordWrapMode(QTextOption::WordWrap);
}

void frmMain::BuildButts()
{
    cButt[1] = control<controls::ColorButton>(m_client, "cButt(1)");
    for (int n = 1; n <= game::numberCount; ++n) {
        if (n > 1) {
            cButt[n] = new controls::ColorButton(m_client);
            cButt[n]->setObjectName(QStringLiteral("cButt(%1)").arg(n));
            cButt[n]->setText(QString::number(n));
            controls::place(cButt[n], mainDesign::numberButton(n), m_scale);
            setTabOrder(cButt[n - 1], cButt[n]);
        }
        connect(cButt[n], &QPushButton::clicked, this, [this, n] { cButt_Click(n); });
        markNumber(n, false);
    }
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
