#include "frmMain.h"

#include "entry.h"
#include "text_box.h"

#include <QPushButton>

void frmMain::Text1_KeyPress(int &KeyAscii)
{
    switch (KeyAscii) {
    case 13:
        callEntry();
        Text1->clear();
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
    const QString text = board::withoutLetter(Text1->text());
    Text1->deleteBut(text);
    if (const std::optional<int> n = board::calledBy(text))
        cButt_Click(*n);
}

/// Empties the entry box and gives it the focus, ready for the next number.
void frmMain::returnToEntry()
{
    Text1->clear();
    Text1->setFocus();
}
