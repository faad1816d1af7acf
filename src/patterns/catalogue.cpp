#include "catalogue.h"

#include <algorithm>

namespace patterns {

// clang-format off
constexpr Pattern table[] = {
    {1, "Bingo", Frames{"X.... .X... ..X.. ...X. ....X",
                        "..X.. ..X.. ..X.. ..X.. ..X..",
                        "....X ...X. ..X.. .X... X....",
                        "..... ..... XXXXX ..... ....."}, u""},

    {2, "Four Corner", Frames{"X...X ..... ..... ..... X...X"}, u"ING"},
    {3, "Inside Cor", Frames{"..... .X.X. ..... .X.X. ....."}, u"BNO"},

    {4, "Stamp", Frames{"XX... XX... ..... ..... .....",
                        "...XX ...XX ..... ..... .....",
                        "..... ..... ..... ...XX ...XX",
                        "..... ..... ..... XX... XX..."}, u"N"},

    {5, "Dbl Stamp", Frames{"XX.XX XX.XX ..... ..... .....",
                            "XX... XX... ..... ...XX ...XX",
                            "...XX ...XX ..... ...XX ...XX",
                            "...XX ...XX ..... XX... XX...",
                            "..... ..... ..... XX.XX XX.XX",
                            "XX... XX... ..... ...XX ...XX",
                            "XX... XX... ..... XX... XX...",
                            "...XX ...XX ..... XX... XX..."}, u"N"},

    {6, "Six Pack", Frames{"XXX.. XXX.. ..... ..... .....",
                           "..... .XX.. .XX.. .XX.. .....",
                           "..... ..... ..XXX ..XXX .....",
                           "..... ..... ...XX ...XX ...XX",
                           "..... ..... ..... XXX.. XXX..",
                           "..XX. ..XX. ..XX. ..... ....."}, u""},

    {7, "Nine Pack", Frames{"XXX.. XXX.. XXX.. ..... .....",
                            "..... ..XXX ..XXX ..XXX .....",
                            "..... ..... .XXX. .XXX. .XXX."}, u""},

    {8, "Outside Box", Frames{"XXXXX X...X X...X X...X XXXXX"}, u""},
    {9, "Inside Box", Frames{"..... .XXX. .X.X. .XXX. ....."}, u"BO"},
    {10, "In Diamond", Frames{"..... ..X.. .X.X. ..X.. ....."}, u"BO"},
    {11, "Out Diamond", Frames{"..X.. ..... X...X ..... ..X.."}, u"IG"},
    {12, "Clover Leaf", Frames{"XX.XX XX.XX ..... XX.XX XX.XX"}, u"N"},
    {13, "Plus Sign", Frames{"..X.. ..X.. XXXXX ..X.. ..X.."}, u""},

    {14, "Kite", Frames{"XX... XX... ..X.. ...X. ....X",
                        "...XX ...XX ..X.. .X... X....",
                        "X.... .X... ..X.. ...XX ...XX",
                        "....X ...X. ..X.. XX... XX..."}, u"N"},

    {15, "J", Frames{"XXXXX ..X.. ..X.. X.X.. XXX.."}, u""},
    {16, "M", Frames{"X...X XX.XX X.X.X X...X X...X"}, u""},
    {17, "N", Frames{"X...X XX..X X.X.X X..XX X...X"}, u""},
    {18, "T", Frames{"XXXXX ..X.. ..X.. ..X.. ..X.."}, u""},
    {19, "U", Frames{"X...X X...X X...X X...X XXXXX"}, u""},
    {20, "X", Frames{"X...X .X.X. ..X.. .X.X. X...X"}, u""},
    {21, "ALL", Frames{"XXXXX XXXXX XXXXX XXXXX XXXXX"}, u""},
};
// clang-format on

static_assert(std::size(table) == patternCount);

const Pattern &pattern(int id)
{
    return *std::ranges::find(table, id, &Pattern::id);
}

} // namespace patterns
