#pragma once

#include <QFont>

class QApplication;

namespace controls {

/// Gives the program the one look that it has on every desktop: Fusion style, a light palette, the default
/// font. Call it once, before the first window is made.
void applyAppearance(QApplication &application);

/// The font of plain controls, "MS Sans Serif" or a face of the same widths, in points.
QFont sansFont(double points = 8.0, bool bold = false);

/// The font of the displays, "Courier New" or a face of the same widths, in points.
QFont displayFont(double points, bool bold = true);

} // namespace controls
