#include "catalogue.h"

#include <algorithm>

namespace patterns {

// clang-format off
const Pattern table[] = {
    {1, "Bingo", {"X.... .X... ..X.. ...X. ....X",
                  "..X.. ..X.. ..X.. ..X.. ..X..",
                  "....X ...X. ..X.. .X... X....",
                  "..... ..... XXXXX ..... ....."}, u""},

    {2, "Four Corner", {"X...X ..... ..... ..... X...X"}, u"ING"},
    {3, "Inside Cor", {"..... .X.X. ..... .X.X. ....."}, u"BNO"},

    {4, "Stamp", {"XX... XX... ..... ..... .....",
                  "...XX ...XX ..... ..... .....",
                  "..... ..... ..... ...XX ...XX",
                  "..... ..... ..... XX... XX..."}, u"N"},

    {5, "Dbl Stamp", {"XX.XX XX.XX ..... ..... .....",
                      "XX... XX... ..... ...XX ...XX",
                      "...XX ...XX ..... ...XX ...XX",
                      "...XX ...XX ..... XX... XX...",
                      "..... ..... ..... XX.XX XX.XX",
                      "XX... XX... ..... ...XX ...XX",
                      "XX... XX... ..... XX... XX...",
                      "...XX ...XX ..... XX... XX..."}, u"N"},

    {6, "Six Pack", {"XXX.. XXX.. ..... ..... .....",
                     "..... .XX.. .XX.. .XX.. .....",
                     "..... ..... ..XXX ..XXX .....",
                     "..... ..... ...XX ...XX ...XX",
                     "..... ..... ..... XXX.. XXX..",
                     "..XX. ..XX. ..XX. ..... ....."}, u""},

    {7, "Nine Pack", {"XXX.. XXX.. XXX.. ..... .....",
                      "..... ..XXX ..XXX ..XXX .....",
                      "..... ..... .XXX. .XXX. .XXX."}, u""},

    {8, "Outside Box", {"XXXXX X...X X...X X...X XXXXX"}, u""},
    {9, "Inside Box", {"..... .XXX. .X.X. .XXX. ....."}, u"BO"},
    {10, "In Diamond", {"..... ..X.. .X.X. ..X.. ....."}, u"BO"},
    {11, "Out Diamond", {"..X.. ..... X...X ..... ..X.."}, u"IG"},
    {12, "Clover Leaf", {"XX.XX XX.XX ..... XX.XX XX.XX"}, u"N"},
    {13, "Plus Sign", {"..X.. ..X.. XXXXX ..X.. ..X.."}, u""},

    {14, "Kite", {"XX... XX... ..X.. ...X. ....X",
                  "...XX ...XX ..X.. .X... X....",
                  "X.... .X... ..X.. ...XX ...XX",
                  "....X ...X. ..X.. XX... XX..."}, u"N"},

    {15, "J", {"XXXXX ..X.. ..X.. X.X.. XXX.."}, u""},
    {16, "M", {"X...X XX.XX X.X.X X...X X...X"}, u""},
    {17, "N", {"X...X XX..X X.X.X X..XX X...X"}, u""},
    {18, "T", {"XXXXX ..X.. ..X.. ..X.. ..X.."}, u""},
    {19, "U", {"X...X X...X X...X X...X XXXXX"}, u""},
    {20, "X", {"X...X .X.X. ..X.. .X.X. X...X"}, u""},
    {21, "ALL", {"XXXXX XXXXX XXXXX XXXXX XXXXX"}, u""},
};
// clang-format on

static_assert(std::size(table) == patternCount);

const Pattern &pattern(int id)
{
    return *std::ranges::find(table, id, &Pattern::id);
}

} // namespace patterns
