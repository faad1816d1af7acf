#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
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
    static constexpr std::size_t most = 8;

    template <std::size_t... sizes>
    consteval Frames(const char (&...drawings)[sizes])
        : m_grids{Grid(drawings)...}
        , m_count(sizeof...(sizes))
    {
        static_assert(sizeof...(sizes) >= 1 && sizeof...(sizes) <= most);
    }

    constexpr int count() const { return static_cast<int>(m_count); }
    /// `frame` is 1 to count().
    constexpr const Grid &operator[](int frame) const { return m_grids[static_cast<std::size_t>(frame) - 1]; }

private:
    std::array<Grid, most> m_grids{};
    std::size_t m_count;
};

/// The board columns that a pattern takes out of play, as their letters. They are data of their own: a column
/// in which a pattern lights no cell, or only the centre, need not be shadowed.
class Shadow
{
public:
    consteval Shadow(std::string_view letters = {})
        : m_letters(letters)
    {
        for (const char letter : letters) {
            if (std::string_view("BINGO").find(letter) == std::string_view::npos)
                throw "a shadow names columns by their letters";
        }
    }

    constexpr bool empty() const { return m_letters.empty(); }
    constexpr bool covers(char16_t letter) const
    {
        return letter < 0x80 && m_letters.find(static_cast<char>(letter)) != std::string_view::npos;
    }

private:
    std::string_view m_letters;
};

struct Pattern
{
    int id;
    const char *caption;
    Frames frames;
    Shadow shadow;

    constexpr bool animated() const { return frames.count() > 1; }
};

/// All patterns, in the order of their ids, 1 to 21.
std::span<const Pattern, patternCount> catalogue();

/// The pattern of that id, 1 to 21.
const Pattern &pattern(int id);

} // namespace patterns
