#include "frmMain.h"

#include "frmAbout.h"
#include "frmBingo.h"
#include "frmHelp.h"
#include "frmVoices.h"
#include "tool_window.h"

#include <utility>

/// Shows the owner's window of that kind, which is made where it is not open yet.
template <class Window, class... Arguments>
static void open(QWidget *owner, Arguments &&...arguments)
{
    QPointer window = owner->findChild<Window *>();
    if (!window) {
        window = new Window(std::forward<Arguments>(arguments)..., owner);
        window->Form_Load(); // may show a message box, and the window may be closed meanwhile
    }
    if (window)
        controls::showInFront(window);
}

void frmMain::mnuSpeak_Click()
{
    open<frmVoices>(this, m_voiceChoice);
}

void frmMain::mnuHelp_Click()
{
    open<frmHelp>(this);
}

void frmMain::mnuAbout_Click()
{
    open<frmAbout>(this);
}

void frmMain::cBingo_Click()
{
    if (Timer2->isActive())
        cPause_Click();
    focusOn(Text1);
    if (!m_bingo) {
        m_bingo = new frmBingo(this);
        m_bingo->Form_Load();
        connect(m_bingo, &QObject::destroyed, m_reader, [this, isPart = !m_bingo->isWindow()] {
            m_reader->say(QStringLiteral("BINGO closed"));
            if (isPart)
                setReachable(true);
        });
    }
    if (!m_bingo->isWindow())
        setReachable(false);
    m_bingo->cover();
    m_bingo->fill();
    controls::showInFront(m_bingo);
    m_reader->waitFor(m_bingo);
}

/// What lies beneath BINGO cannot be reached where both are one window.
void frmMain::setReachable(bool isReachable)
{
    menuBar()->setEnabled(isReachable);
    m_client->setEnabled(isReachable);
    if (isReachable)
        Text1->setFocus();
}

void frmMain::closeWindows()
{
    for (QWidget *window : std::initializer_list<QWidget *>{findChild<frmAbout *>(), findChild<frmHelp *>(),
                                                            findChild<frmVoices *>()}) {
        if (window)
            window->close();
    }
}
