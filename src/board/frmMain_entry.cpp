#include "frmMain.h"

#include "entry.h"

void frmMain::Text1_KeyPress(int &KeyAscii)
{
    switch (KeyAscii) {
    case controls::enter:
        callEntry();
        break;
    case 'R':
    case 'r':
        Text1->clear();
        cRandNum_Click();
        break;
    case 'P':
    case 'p':
        Text1->clear();
        if (cPause->isEnabled())
            cPause_Click();
        break;
    default:
        return;
    }
    KeyAscii = 0;
}

void frmMain::callEntry()
{
    if (const std::optional<int> n = game::calledBy(Text1->text()))
        cButt_Click(*n);
    else {
        Text1->clear();
        m_reader->say(QStringLiteral("Nothing called"));
    }
}
