#include "frmMain.h"

#include "frmAbout.h"
#include "frmBingo.h"
#include "frmHelp.h"
#include "frmVoices.h"
#include "tool_window.h"

#include <utility>

/// Makes and loads a window that is not open yet. False when it is gone already: loading may show a message
/// box, and the window may be closed meanwhile.
template <class Window, class... Arguments>
bool frmMain::load(QPointer<Window> &window, Arguments &&...arguments)
{
    if (!window) {
        window = new Window(std::forward<Arguments>(arguments)..., this);
        window->Form_Load();
    }
    return window;
}

void frmMain::mnuSpeak_Click()
{
    if (load(m_voices, m_voiceChoice))
        controls::showInFront(m_voices);
}

void frmMain::mnuHelp_Click()
{
    if (load(m_help))
        controls::showInFront(m_help);
}

void frmMain::mnuAbout_Click()
{
    if (load(m_about))
        controls::showInFront(m_about);
}

void frmMain::cBingo_Click()
{
    if (Timer2->isActive())
        cPause_Click();
    focusOn(Text1);
    const bool isOpen = m_bingo;
    if (!load(m_bingo))
        return;
    const bool isPart = !m_bingo->isWindow();
    if (!isOpen)
        connect(m_bingo, &QObject::destroyed, m_reader, [this, isPart] {
            m_reader->say(QStringLiteral("BINGO closed"));
            if (isPart)
                setReachable(true);
        });
    if (isPart)
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
    for (QWidget *window : std::initializer_list<QWidget *>{m_about, m_help, m_voices}) {
        if (window)
            window->close();
    }
}
