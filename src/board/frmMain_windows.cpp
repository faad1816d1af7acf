#include "frmMain.h"

#include "frmAbout.h"
#include "frmHelp.h"
#include "frmVoices.h"
#include "tool_window.h"

#include <QCoreApplication>

void frmMain::mnuSpeak_Click()
{
    if (m_frmVoices) {
        m_frmVoices->raise();
        m_frmVoices->activateWindow();
        return;
    }
    m_frmVoices = new frmVoices(m_voiceChoice, this);
    m_frmVoices->show();
    m_frmVoices->Form_Load(); // a failure shows its box over the open window
}
void frmMain::mnuHelp_Click()
{
    if (!m_help)
        m_help = new frmHelp(this, QCoreApplication::applicationDirPath());
    controls::showInFront(m_help);
}

void frmMain::mnuAbout_Click()
{
    if (!m_about)
        m_about = new frmAbout(this);
    controls::showInFront(m_about);
}

void frmMain::closeWindows()
{
    for (QWidget *window : std::initializer_list<QWidget *>{m_about, m_help, m_frmVoices}) {
        if (window)
            window->close();
    }
}
