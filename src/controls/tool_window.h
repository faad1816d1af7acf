#pragma once

class QSize;
class QWidget;

/// The manners of the windows beside the main window.
namespace controls {

/// Makes `window` a tool window of its parent: a small caption with a close box, no entry in the taskbar,
/// above the parent but not in its way. Closing it destroys it.
void makeToolWindow(QWidget *window);

/// The size in pixels that the screen leaves to a tool window's contents.
QSize roomFor(const QWidget *window);

/// Moves a tool window that has its size and has not been shown yet to the middle of the screen.
void centreOnScreen(QWidget *window);

/// Shows a window, or brings it forward where it is open or minimized, and makes it the active one.
void showInFront(QWidget *window);

} // namespace controls
