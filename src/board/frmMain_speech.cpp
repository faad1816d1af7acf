#include "frmMain.h"

#include "message_box.h"

void frmMain::chkMakeVoiceCall_Click(bool checked)
{
    sayChecked(chkMakeVoiceCall->text(), checked);
    focusOn(Text1);
}

void frmMain::Speak(const QString &text)
{
    try {
        m_announcement.speak(text);
    } catch (const base::Error &error) {
        ReportError(error);
    }
}

/// A phrase has been spoken: the first one of a call is followed by its digits.
void frmMain::V_EndStream(int, const QVariant &)
{
    if (const std::optional<QString> phrase = m_announcement.nextPhrase())
        Speak(*phrase);
}

void frmMain::ReportError(const base::Error &error)
{
    controls::reportError(this, error);
}
