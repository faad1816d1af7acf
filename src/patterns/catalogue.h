#pragma once

#include "numbers.h"

#include <QStringList>

/// The winning patterns.
namespace patterns {

inline constexpr int cardSide = 5;
inline constexpr int cellCount = cardSide * cardSide;
inline constexpr int patternCount = 21;

struct Pattern
{
    int id;
    const char *caption;
    /// Its forms, one after the other: one of a static pattern, several of an animated one. Each is drawn as
    /// on the card: five rows of five with a blank between them, the top row first, X for a lit cell.
    QStringList frames;
    /// The letters of the columns that the pattern takes out of play. They are not derived from the cells: a
    /// column in which a pattern lights no cell, or only the centre, need not be shadowed.
    QStringView shadow;

    bool animated() const { return frames.size() > 1; }
    /// `n` is 1 to 75.
    bool shadows(int n) const { return shadow.contains(game::letterOf(n)); }
};

/// The pattern of that id, 1 to 21.
const Pattern &pattern(int id);

} // namespace patterns
