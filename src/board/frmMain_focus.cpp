#include "frmMain.h"

#include <QCoreApplication>
#include <QKeyEvent>

/// Empties the entry box and gives it the focus, ready for the next number.
void frmMain::returnToEntry()
{
    Text1->clear();
    focusOn(Text1);
}

/// When a tick of the countdown calls while the keyboard is in the menu bar, the focus moves only after the
/// keyboard has left the bar.
void frmMain::focusAfterCall()
{
    Text1->clear();
    if (m_isTick && m_menuBar->hasKeyboard())
        m_focusIsDue = true;
    else
        focusByRule();
}

void frmMain::focusByRule()
{
    if (Timer2->isActive())
        focusOn(cPause);
    else
        focusOn(Text1);
}

void frmMain::menuBar_Left()
{
    if (m_focusIsDue)
        focusByRule();
}

void frmMain::focusOn(QWidget *control)
{
    if (focusWidget() == iFontSize && iFontSize->lineEdit()->isModified())
        iFontSize->setEditText(QString::number(m_fontSize)); // what is drawn
    m_focusIsDue = false;
    control->setFocus();
}

bool frmMain::typedAtPause(QKeyEvent &key)
{
    const QChar typed = controls::typedCharacter(key);
    if (typed == u'p' || typed == u'P') {
        cPause_Click();
        return true;
    }
    const bool isForEntry = !Timer2->isActive() && typed.isPrint() && typed != u' ';
    if (isForEntry) {
        focusOn(Text1);
        QCoreApplication::sendEvent(Text1, &key);
    }
    return isForEntry;
}
