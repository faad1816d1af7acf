#pragma once

#include <functional>

class QMargins;
class QPoint;
class QSize;
class QWidget;

/// The manners of the windows beside the main window.
namespace controls {

/// Makes `window` a tool window of its parent: a small caption with a close box, no entry in the taskbar,
/// above the parent but not in its way. Closing it destroys it.
void makeToolWindow(QWidget *window);

/// The largest size in pixels that a tool window's contents can have on its screen.
QSize largestSize(const QWidget *window);

/// Moves a tool window that has its size and has not been shown yet to the middle of the screen.
void centreOnScreen(QWidget *window);

/// Moves the outer top left of a window to `place`, or as near to it as keeps all of the window inside the
/// work area. `frame` is what the desktop puts around it.
void moveInside(QWidget *window, QPoint place, QMargins frame);

/// After a change of scale: gives every open window its size in pixels again, and keeps it inside the work
/// area.
void refitWindows();

/// From now on calls `changed` when the screen of `window`, which has been shown, becomes another one, or
/// when a screen's scale or its work area changes: once for all that changes within a tenth of a second.
void onScreenChange(QWidget *window, const std::function<void()> &changed);

/// Shows a window, over its owner where it has no place yet, or brings it forward where it is open or
/// minimized, and makes it the active one.
void showInFront(QWidget *window);

} // namespace controls
