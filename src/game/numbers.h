#pragma once

#include <QString>

/// The numbers of the game, 1 to 75: their column letters, and the texts in which the displays show them.
/// Each column letter stands for fifteen numbers: B 1-15, I 16-30, N 31-45, G 46-60, O 61-75.
namespace game {

inline constexpr int numberCount = 75;
inline constexpr int numbersPerColumn = 15;
inline constexpr int cellWidth = 3;

constexpr bool isNumber(int n)
{
    return n >= 1 && n <= numberCount;
}

/// The column of number n, 0 for B to 4 for O.
constexpr int columnOf(int n)
{
    return (n - 1) / numbersPerColumn;
}

inline constexpr QStringView columnLetters = u"BINGO";

inline QChar letterOf(int n)
{
    return columnLetters[columnOf(n)];
}

/// Where the cell of number n, `cellWidth` characters, starts in the board text, counting from 0.
constexpr int cellOffset(int n)
{
    return cellWidth * (n - 1) + 2 * columnOf(n);
}

/// The current-number label, "N33"; empty for what is no number.
QString currentLabel(int n);

/// The same as screen readers say it, "N 33".
QString spokenLabel(int n);

/// The entry of the list of past numbers, always three characters; empty for what is no number.
QString pastEntry(int n);

/// All 75 cells in five lines with a blank line between them.
QString boardText();

/// The five letters, each followed by `lineBreaks` line breaks but the last.
QString letterColumn(int lineBreaks);

} // namespace game
