#pragma once

#include <array>
#include <cstddef>

namespace game {

/// An array whose indexes run from 1 to `size`, like the numbers, the cells and the patterns of the game.
template <class Element, int size>
class FromOne : public std::array<Element, size>
{
public:
    constexpr Element &operator[](int index) { return this->at(static_cast<std::size_t>(index) - 1); }
    constexpr const Element &operator[](int index) const
    {
        return this->at(static_cast<std::size_t>(index) - 1);
    }
};

} // namespace game
