#include "catalogue.h"

#include <algorithm>

namespace patterns {

namespace {

// clang-format off
constexpr Pattern table[] = {
    {1, "Bingo", Frames{"X.... .X... ..X.. ...X. ....X",
                        "..X.. ..X.. ..X.. ..X.. ..X..",
                        "....X ...X. ..X.. .X... X....",
                        "..... ..... XXXXX ..... ....."}, Shadow{}},

    {2, "Four Corner", Frames{"X...X ..... ..... ..... X...X"}, Shadow{u"ING"}},
    {3, "Inside Cor", Frames{"..... .X.X. ..... .X.X. ....."}, Shadow{u"BNO"}},

    {4, "Stamp", Frames{"XX... XX... ..... ..... .....",
                        "...XX ...XX ..... ..... .....",
                        "..... ..... ..... ...XX ...XX",
                        "..... ..... ..... XX... XX..."}, Shadow{u"N"}},

    {5, "Dbl Stamp", Frames{"XX.XX XX.XX ..... ..... .....",
                            "XX... XX... ..... ...XX ...XX",
                            "...XX ...XX ..... ...XX ...XX",
                            "...XX ...XX ..... XX... XX...",
                            "..... ..... ..... XX.XX XX.XX",
                            "XX... XX... ..... ...XX ...XX",
                            "XX... XX... ..... XX... XX...",
                            "...XX ...XX ..... XX... XX..."}, Shadow{u"N"}},

    {6, "Six Pack", Frames{"XXX.. XXX.. ..... ..... .....",
                           "..... .XX.. .XX.. .XX.. .....",
                           "..... ..... ..XXX ..XXX .....",
                           "..... ..... ...XX ...XX ...XX",
                           "..... ..... ..... XXX.. XXX..",
                           "..XX. ..XX. ..XX. ..... ....."}, Shadow{}},

    {7, "Nine Pack", Frames{"XXX.. XXX.. XXX.. ..... .....",
                            "..... ..XXX ..XXX ..XXX .....",
                            "..... ..... .XXX. .XXX. .XXX."}, Shadow{}},

    {8, "Outside Box", Frames{"XXXXX X...X X...X X...X XXXXX"}, Shadow{}},
    {9, "Inside Box", Frames{"..... .XXX. .X.X. .XXX. ....."}, Shadow{u"BO"}},
    {10, "In Diamond", Frames{"..... ..X.. .X.X. ..X.. ....."}, Shadow{u"BO"}},
    {11, "Out Diamond", Frames{"..X.. ..... X...X ..... ..X.."}, Shadow{u"IG"}},
    {12, "Clover Leaf", Frames{"XX.XX XX.XX ..... XX.XX XX.XX"}, Shadow{u"N"}},
    {13, "Plus Sign", Frames{"..X.. ..X.. XXXXX ..X.. ..X.."}, Shadow{}},

    {14, "Kite", Frames{"XX... XX... ..X.. ...X. ....X",
                        "...XX ...XX ..X.. .X... X....",
                        "X.... .X... ..X.. ...XX ...XX",
                        "....X ...X. ..X.. XX... XX..."}, Shadow{u"N"}},

    {15, "J", Frames{"XXXXX ..X.. ..X.. X.X.. XXX.."}, Shadow{}},
    {16, "M", Frames{"X...X XX.XX X.X.X X...X X...X"}, Shadow{}},
    {17, "N", Frames{"X...X XX..X X.X.X X..XX X...X"}, Shadow{}},
    {18, "T", Frames{"XXXXX ..X.. ..X.. ..X.. ..X.."}, Shadow{}},
    {19, "U", Frames{"X...X X...X X...X X...X XXXXX"}, Shadow{}},
    {20, "X", Frames{"X...X .X.X. ..X.. .X.X. X...X"}, Shadow{}},
    {21, "ALL", Frames{"XXXXX XXXXX XXXXX XXXXX XXXXX"}, Shadow{}},
};
// clang-format on

static_assert(std::size(table) == patternCount);

} // namespace

const Pattern &pattern(int id)
{
    return *std::ranges::find(table, id, &Pattern::id);
}

} // namespace patterns
