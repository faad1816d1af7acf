#pragma once

#include <QColor>

/// The fixed colours of the program. None of them depends on the desktop's.
namespace controls::colors {

inline constexpr QRgb buttonFace = 0xFFF0F0F0;
inline constexpr QRgb buttonShadow = 0xFFA0A0A0;
inline constexpr QRgb white = 0xFFFFFFFF;
inline constexpr QRgb black = 0xFF000000;
inline constexpr QRgb red = 0xFFFF0000;
inline constexpr QRgb blue = 0xFF0000FF;
inline constexpr QRgb disabledText = 0xFF6D6D6D;
inline constexpr QRgb edge = 0xFF808080;
inline constexpr QRgb frame = 0xFFB9B9B9;
inline constexpr QRgb highlight = 0xFF0A64AD;

} // namespace controls::colors
