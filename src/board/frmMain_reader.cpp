#include "frmMain.h"

using game::spokenLabel;

static QString listed(const QStringList &texts)
{
    return texts.isEmpty() ? QStringLiteral("none") : texts.join(QStringLiteral(", "));
}

/// The current number and the count: "N 33, 12 called".
QString frmMain::stateInWords() const
{
    const QString count = QStringLiteral("%1 called").arg(iCallCnt);
    return iLastCalls[1] == 0 ? count : spokenLabel(iLastCalls[1]) + QStringLiteral(", ") + count;
}

void frmMain::sayAutoCall()
{
    if (Timer2->isActive())
        m_reader->say(QStringLiteral("Automatic calling, every %1 seconds").arg(cboSec->currentText()));
    else
        m_reader->say(chkAutoCall->isChecked() ? QStringLiteral("Paused")
                                               : QStringLiteral("Automatic calling off"));
}

/// Pattern `id` was selected or put away.
void frmMain::sayPattern(int id)
{
    const QString caption = cDemoButt[id]->text();
    QStringList columns;
    for (const QChar letter : patterns::pattern(id).shadow)
        columns += letter;
    if (iCurPattern != id)
        m_reader->say(caption + QStringLiteral(" put away"));
    else if (columns.isEmpty() || !mnuShaddow->isChecked())
        m_reader->say(caption + QStringLiteral(", all columns in play"));
    else
        m_reader->say(caption + QStringLiteral(", columns %1 out of play").arg(listed(columns)));
}

void frmMain::sayInterval()
{
    m_reader->say(cboSec->currentText() + QStringLiteral(" seconds"));
}

void frmMain::sayChecked(const QString &caption, bool checked)
{
    m_reader->say(caption + (checked ? QStringLiteral(", checked") : QStringLiteral(", not checked")));
}

/// The numbers that are red on the large board.
void frmMain::describeBoard()
{
    QStringList called;
    for (int n = 1; n <= game::numberCount; ++n) {
        if (iCalled[n])
            called += spokenLabel(n);
    }
    RTB2->setAccessibleDescription(listed(called));
}

/// The current number and the past ones.
void frmMain::describeCalls()
{
    QStringList past;
    for (int k = 2; k <= 5 && iLastCalls[k] != 0; ++k)
        past += spokenLabel(iLastCalls[k]);
    RTB3->setAccessibleDescription(iLastCalls[1] == 0 ? listed({}) : spokenLabel(iLastCalls[1]));
    RTB4->setAccessibleDescription(listed(past));
}

/// Renames the controls in a moment, when the focus has left the one that was pressed: a screen reader reads
/// out the new name of what has the focus.
void frmMain::nameSoon()
{
    if (isVisible() && !m_naming->isActive()) // the board is named whole when it is shown
        m_naming->start();
}

/// Names up to `left` controls by what they show now. While the window is shown only a few at a time: a
/// screen reader with fifty events in its queue drops the sentences that follow.
void frmMain::nameByState(int left)
{
    const auto name = [&left](QWidget *control, const QString &spoken) {
        if (left > 0 && control->accessibleName() != spoken) {
            control->setAccessibleName(spoken);
            --left;
        }
    };
    name(m_reader, stateInWords());
    // AT-SPI's screen readers are not told the value of a list, but read the label before it.
    name(controls::control<QLabel>(m_client, "Label3"),
         cboSec->currentText() + QStringLiteral(" seconds between automatic draws"));
    for (int n = 1; n <= game::numberCount; ++n)
        name(cButt[n],
             spokenLabel(n) + (iCalled[n] ? QStringLiteral(", called") : QStringLiteral(", not called")));
    for (int id = 1; id <= patterns::patternCount; ++id)
        name(cDemoButt[id], cDemoButt[id]->text() + (id == iCurPattern ? QStringLiteral(" pattern, selected")
                                                                       : QStringLiteral(" pattern")));
    for (int i = 1; i <= patterns::cellCount; ++i)
        name(m_card->cell(i), m_card->cellInWords(i));
    name(m_card->cell(1)->parentWidget(), m_card->inWords());
    if (left == 0)
        nameSoon();
}
