#include "numbers.h"

#include <QStringList>

namespace game {

QString currentLabel(int n)
{
    return isNumber(n) ? letterOf(n) + QString::number(n) : QString();
}

QString spokenLabel(int n)
{
    return QStringLiteral("%1 %2").arg(letterOf(n)).arg(n);
}

QString pastEntry(int n)
{
    return isNumber(n) ? currentLabel(n).leftJustified(cellWidth) : QString();
}

QString boardText()
{
    QString text;
    for (int n = 1; n <= numberCount; ++n) {
        text += QString::number(n).leftJustified(cellWidth);
        if (n % numbersPerColumn == 0 && n < numberCount)
            text += QStringLiteral("\n\n");
    }
    return text;
}

QString letterColumn(int lineBreaks)
{
    const QStringList letters = columnLetters.toString().split(QString(), Qt::SkipEmptyParts);
    return letters.join(QStringLiteral("\n").repeated(lineBreaks));
}

} // namespace game
