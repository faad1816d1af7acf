#pragma once

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

/// Moves the outer top left of a window as near to `place` as keeps all of the window inside the work area.
/// `frame` is what the desktop puts around it.
void moveInside(QWidget *window, QPoint place, QMargins frame);

/// After a change of scale: gives every open window its size again, and keeps it inside the work area.
void refitWindows();

/// Brings a window to the front and makes it the active one, whether it is open, minimized or not shown yet.
/// Without a place of its own it opens over its owner.
void showInFront(QWidget *window);

} // namespace controls
