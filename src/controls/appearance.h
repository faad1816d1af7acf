#pragma once

#include <QColor>
#include <QFont>

class QApplication;
class QPainter;
class QRect;

namespace controls {

/// Gives the program the one look that it has on every desktop: Fusion style, a light palette, the default
/// font. Call it once, before the first window is made.
void applyAppearance(QApplication &application);

/// The font of plain controls, "MS Sans Serif" or a face of the same widths, in points.
QFont sansFont(double points = 8.0, bool bold = false);

/// The font of the displays, "Courier New" or a face of the same widths, in points.
QFont displayFont(double points, bool bold = true);

/// Fills a frame just inside `rect`, `width` pixels wide. Its sides are whole device pixels and all equally
/// wide at any scale factor, where lines drawn with a pen may vanish.
void fillFrame(QPainter &painter, const QRect &rect, int width, const QColor &topLeft,
               const QColor &bottomRight);
void fillFrame(QPainter &painter, const QRect &rect, int width, const QColor &color);

} // namespace controls
