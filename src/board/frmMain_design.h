#pragma once

#include "design_table.h"

/// The design of the main window: every control with its place, size, caption and tab position.
namespace mainDesign {

/// The client area, its least size, and the large board's distance from its edges, in twips.
inline constexpr int clientWidth = 19230;
inline constexpr int clientHeight = 10110;
inline constexpr int leastClientWidth = 13890;
inline constexpr int leastClientHeight = 8215;
inline constexpr int boardRightMargin = 195;
inline constexpr int boardBottomMargin = 150;

/// Twips between neighbouring number buttons.
inline constexpr int buttonGap = 45;

std::span<const controls::DesignRow> rows();
/// The row of a control that is in `rows()`.
const controls::DesignRow &row(const char *name);
/// Number button `n`, 1 to 75, which is made as a copy of the first.
controls::DesignRow numberButton(int n);
/// Pattern button `index`, 1 to 21; its name is given when it is made.
controls::DesignRow patternButton(int index);

} // namespace mainDesign
