#pragma once

#include "from_one.h"
#include "numbers.h"

/// The winning patterns. Their cells are drawn as on the card: five rows of five, the top row first, X for a
/// lit cell and a full stop for an unlit one. A drawing that is no card does not compile.
namespace patterns {

inline constexpr int cardSide = 5;
inline constexpr int cellCount = cardSide * cardSide;
inline constexpr int patternCount = 21;

/// Which cells of the card are lit. Cells are numbered from 1 to 25, row by row.
class Grid
{
public:
    constexpr Grid() = default;

    consteval Grid(const char (&drawing)[cellCount + cardSide])
    {
        for (int i = 0; i < cellCount + cardSide - 1; ++i) {
            const int rowsAbove = i / (cardSide + 1);
            const bool isBlank = i % (cardSide + 1) == cardSide;
            if (isBlank ? drawing[i] != ' ' : drawing[i] != 'X' && drawing[i] != '.')
                throw "a drawing is five groups of X and full stop with a blank between them";
            if (!isBlank)
                m_lit[i - rowsAbove + 1] = drawing[i] == 'X';
        }
    }

    /// `cell` is 1 to 25.
    constexpr bool lit(int cell) const { return m_lit[cell]; }

private:
    game::FromOne<bool, cellCount> m_lit{};
};

/// The forms of a pattern, one after the other: one for a static pattern, several for an animated one.
class Frames
{
public:
    static constexpr int most = 8;

    template <std::size_t... sizes>
    consteval Frames(const char (&...drawings)[sizes])
        : m_grids{Grid(drawings)...}
        , m_count(sizeof...(sizes))
    {
        static_assert(sizeof...(sizes) >= 1 && sizeof...(sizes) <= most);
    }

    constexpr int count() const { return m_count; }
    /// `frame` is 1 to count().
    constexpr const Grid &operator[](int frame) const { return m_grids[frame]; }
    /// The frame after `frame`; the first comes after the last.
    constexpr int after(int frame) const { return frame % m_count + 1; }

private:
    game::FromOne<Grid, most> m_grids{};
    int m_count;
};

struct Pattern
{
    int id;
    const char *caption;
    Frames frames;
    /// The letters of the columns that the pattern takes out of play. They are not derived from the cells: a
    /// column in which a pattern lights no cell, or only the centre, need not be shadowed.
    QStringView shadow;

    constexpr bool animated() const { return frames.count() > 1; }
    /// `n` is 1 to 75.
    bool shadows(int n) const { return shadow.contains(game::letterOf(n)); }
};

/// The pattern of that id, 1 to 21.
const Pattern &pattern(int id);

} // namespace patterns
