#pragma once

#include "from_one.h"
#include "numbers.h"

#include <cstdint>
#include <string_view>

/// The winning patterns that the program knows. A pattern's cells are drawn as on the card: five rows of
/// five, the top row first, X for a lit cell and a full stop for an unlit one. A drawing that is no card does
/// not compile.
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
        int cell = 0;
        for (int i = 0; i < cellCount + cardSide - 1; ++i) {
            const bool isBlank = i % (cardSide + 1) == cardSide;
            if (isBlank ? drawing[i] != ' ' : drawing[i] != 'X' && drawing[i] != '.')
                throw "a drawing is five groups of X and full stop with a blank between them";
            if (isBlank)
                continue;
            if (drawing[i] == 'X')
                m_lit |= 1U << cell;
            ++cell;
        }
    }

    /// `cell` is 1 to 25.
    constexpr bool lit(int cell) const { return (m_lit >> (cell - 1) & 1U) != 0; }

private:
    std::uint32_t m_lit = 0;
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
    /// The frame that a tick shows, given the number behind the one shown before.
    constexpr int wrapped(int frame) const { return frame > m_count ? 1 : frame; }

private:
    game::FromOne<Grid, most> m_grids{};
    int m_count;
};

/// The board columns that a pattern takes out of play, as their letters. They are not derived from the cells:
/// a column in which a pattern lights no cell, or only the centre, need not be shadowed.
class Shadow
{
public:
    consteval Shadow(std::u16string_view letters = {})
        : m_letters(letters)
    {
        if (letters.find_first_not_of(game::columnLetters) != std::u16string_view::npos)
            throw "a shadow names columns by their letters";
    }

    constexpr std::u16string_view letters() const { return m_letters; }
    /// `n` is 1 to 75.
    constexpr bool covers(int n) const
    {
        return m_letters.find(game::columnLetter(game::columnOf(n))) != std::u16string_view::npos;
    }

private:
    std::u16string_view m_letters;
};

struct Pattern
{
    int id;
    const char *caption;
    Frames frames;
    Shadow shadow;

    constexpr bool animated() const { return frames.count() > 1; }
};

/// The pattern of that id, 1 to 21.
const Pattern &pattern(int id);

} // namespace patterns
