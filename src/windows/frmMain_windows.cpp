#include "board/frmMain.h"

#include "platform/folders.h"
#include "platform/tool_window.h"
#include "voice/frmVoices.h"
#include "windows/frmAbout.h"
#include "windows/frmHelp.h"

void frmMain::mnuHelp_Click()
{
    if (!m_help) {
        m_help = new frmHelp(this);
        m_help->Form_Load(platform::executableFolder()); // known by now: a box may open
    }
    if (m_help)
        platform::showInFront(m_help);
}

void frmMain::mnuAbout_Click()
{
    if (!m_about)
        m_about = new frmAbout(this);
    platform::showInFront(m_about);
}

void frmMain::closeWindows()
{
    for (QWidget *window : std::initializer_list<QWidget *>{m_about, m_help, m_frmVoices}) {
        if (window)
            window->close();
    }
}
