#include "numeric.h"

#include <QRegularExpression>

namespace base {

std::optional<double> parseNumber(const QString &text)
{
    static const QRegularExpression number(QRegularExpression::anchoredPattern(
        uR"([ \t]*[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?[ \t]*)"));
    if (!number.match(text).hasMatch())
        return std::nullopt;
    return text.toDouble();
}

} // namespace base
