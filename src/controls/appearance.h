#pragma once

#include <QColor>
#include <QFont>

class QApplication;
class QPainter;
class QRegion;

/// The fixed colours of the program. None of them depends on the desktop's.
namespace controls::colors {

inline constexpr QRgb buttonFace = 0xFFF0F0F0;
inline constexpr QRgb buttonShadow = 0xFFA0A0A0;
inline constexpr QRgb disabledText = 0xFF6D6D6D;
inline constexpr QRgb edge = 0xFF808080;
inline constexpr QRgb frame = 0xFFB9B9B9;
inline constexpr QRgb highlight = 0xFF0A64AD;

} // namespace controls::colors

namespace controls {

/// Gives the program the one look that it has on every desktop. Call it before the first window is made.
void applyAppearance(QApplication &application);

/// The font of plain controls, "MS Sans Serif" or a face of the same widths, in points. Where a screen has a
/// scale it has no hinting, so ask for it again when the scale has changed.
QFont sansFont(double points = 8.0, bool bold = false);

/// The font of the displays, bold "Courier New" or a face of the same widths, in points.
QFont displayFont(double points);

/// Fills a frame `width` pixels wide, just inside the bounds of `region`, in one colour or two. Its sides are
/// whole device pixels and equally wide at any scale; the lines of a pen may vanish.
void fillFrame(QPainter &painter, const QRegion &region, int width, const QColor &topLeft,
               QColor bottomRight = {});

} // namespace controls
