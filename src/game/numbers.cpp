#include "numbers.h"

namespace game {

namespace {

const QString lineBreak = QStringLiteral("\r\n");

} // namespace

QString currentLabel(int n)
{
    if (!isNumber(n))
        return {};
    return letterOf(n) + QString::number(n);
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
        if (endsRow(n))
            text += lineBreak + lineBreak;
    }
    return text;
}

QString letterColumn(int lineBreaks)
{
    QString text;
    for (int column = 0; column < columnCount; ++column) {
        if (column > 0)
            text += lineBreak.repeated(lineBreaks);
        text += QChar(columnLetter(column));
    }
    return text;
}

} // namespace game
