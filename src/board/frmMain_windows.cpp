#include "frmMain.h"

#include "frmAbout.h"
#include "frmHelp.h"
#include "frmVoices.h"
#include "tool_window.h"

#include <QCoreApplication>

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
