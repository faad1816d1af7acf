#include "frmMain.h"

#include "buttons.h"
#include "combo_box.h"
#include "numbers.h"
#include "rich_text_box.h"
#include "screen_reader.h"

#include <QTimer>

namespace {

/// "N 33"
QString inWords(int n)
{
    return QStringLiteral("%1 %2").arg(game::letterOf(n)).arg(n);
}

QString orNone(const QStringList &texts, const QString &separator = QStringLiteral(", "))
{
    return texts.isEmpty() ? QStringLiteral("none") : texts.join(separator);
}

} // namespace

/// The current number and the count: "N 33, 12 called".
QString frmMain::stateInWords() const
{
    const QString count = QStringLiteral("%1 called").arg(iCallCnt);
    return iLastCalls[1] == 0 ? count : inWords(iLastCalls[1]) + QStringLiteral(", ") + count;
}

void frmMain::sayUncall(int n)
{
    m_announcer->say(inWords(n) + QStringLiteral(" not called"));
}

void frmMain::sayAutoCall()
{
    m_announcer->say(Timer2->isActive()
                         ? QStringLiteral("Automatic calling, every %1 seconds").arg(cboSec->currentText())
                         : QStringLiteral("Paused"));
}

/// Pattern `id` was selected or put away.
void frmMain::sayPattern(int id)
{
    const patterns::Pattern &pattern = patterns::pattern(id);
    QStringList columns;
    for (int column = 0; column < game::columnCount; ++column) {
        const int first = column * game::numbersPerColumn + 1;
        if (mnuShaddow->isChecked() && pattern.shadow.covers(first))
            columns += game::letterOf(first);
    }
    const QString caption = QString::fromLatin1(pattern.caption);
    if (iCurPattern != id)
        m_announcer->say(caption + QStringLiteral(" put away"));
    else if (columns.isEmpty())
        m_announcer->say(caption + QStringLiteral(", all columns in play"));
    else
        m_announcer->say(caption + QStringLiteral(", columns %1 out of play").arg(orNone(columns)));
}

/// Names follow the record a moment after it changed: by then the focus has left the control that was
/// pressed, whose new name a screen reader would say, too.
void frmMain::describeSoon()
{
    if (!m_describing->isActive())
        m_describing->start();
}

/// Gives the controls the names that they have not yet, a few at a time. A screen reader that has fifty
/// events before it drops what is to be said.
void frmMain::describe()
{
    int left = 10;
    const auto name = [&left](QWidget *control, const QString &newName) {
        if (left > 0 && control->accessibleName() != newName) {
            control->setAccessibleName(newName);
            --left;
        }
    };
    for (int n = 1; n <= game::numberCount; ++n)
        name(cButt[n],
             inWords(n) + (isCalled(n) ? QStringLiteral(", called") : QStringLiteral(", not called")));
    for (int id = 1; id <= patterns::patternCount; ++id)
        name(cDemoButt[id], cDemoButt[id]->text() + (id == iCurPattern ? QStringLiteral(" pattern, selected")
                                                                       : QStringLiteral(" pattern")));
    for (int i = 1; i <= patterns::cellCount; ++i)
        name(m_card->cell(i), m_card->cellInWords(i));
    name(m_card->cell(1)->parentWidget(), m_card->inWords());
    name(m_announcer, stateInWords());
    if (left == 0)
        describeSoon();
}

/// What the two displays of calls show, as a screen reader is to say it.
void frmMain::describeCalls()
{
    QStringList past;
    for (int k = 2; k <= 5 && iLastCalls[k] != 0; ++k)
        past += inWords(iLastCalls[k]);
    RTB3->setAccessibleDescription(iLastCalls[1] == 0 ? orNone({}) : inWords(iLastCalls[1]));
    RTB4->setAccessibleDescription(orNone(past));
}

/// The numbers that are red on the large board, column by column: "B 7, 12; N 33".
void frmMain::describeBoard()
{
    QStringList columns;
    for (int column = 0; column < game::columnCount; ++column) {
        QStringList numbers;
        for (int i = 1; i <= game::numbersPerColumn; ++i) {
            const int n = column * game::numbersPerColumn + i;
            if (isCalled(n))
                numbers += QString::number(n);
        }
        if (!numbers.isEmpty())
            columns +=
                QChar(game::columnLetter(column)) + QStringLiteral(" ") + numbers.join(QStringLiteral(", "));
    }
    RTB2->setAccessibleDescription(orNone(columns, QStringLiteral("; ")));
}
