#pragma once

#include "design_table.h"

/// The about window as designed, in twips.
namespace aboutDesign {

inline constexpr int clientWidth = 4680;
inline constexpr int clientHeight = 3795;

/// A label in bold letters of its own size.
struct LabelFont
{
    const char *label;
    double points;
};

/// The controls. The captions of the publisher's labels, which are none of the design's, are empty here.
std::span<const controls::DesignRow> controls();
std::span<const LabelFont> labelFonts();

} // namespace aboutDesign
