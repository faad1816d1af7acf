#include "frmMain.h"

#include "design_table.h"
#include "frmMain_design.h"
#include "rich_text_box.h"

#include <QEvent>
#include <QMenuBar>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <limits>

using controls::pixels;
using controls::pixelsUp;

/// Gives the window the design's size, or less where the work area has not the room for it, and centres it
/// on the whole screen, then keeps it inside the work area. `frame` is what the desktop puts around it.
void frmMain::placeOnScreen(QMargins frame)
{
    const double dpi = logicalDpiX();
    const QSize bar(0, menuBar()->sizeHint().height());
    const QSize design(pixels(mainDesign::clientWidth, dpi), pixels(mainDesign::clientHeight, dpi));
    const QSize least(pixelsUp(mainDesign::leastClientWidth, dpi),
                      pixelsUp(mainDesign::leastClientHeight, dpi));
    const QRect area = screen()->availableGeometry();
    m_client->setMinimumSize(least);
    resize((design + bar).boundedTo(area.size().shrunkBy(frame)).expandedTo(least + bar));

    const QRect whole = screen()->geometry();
    const QRect outer(QPoint(), size().grownBy(frame));
    const QPoint centred =
        whole.topLeft() + QPoint((whole.width() - outer.width()) / 2, (whole.height() - outer.height()) / 2);
    const QPoint last = area.bottomRight() - outer.bottomRight();
    move(std::max(area.left(), std::min(centred.x(), last.x())),
         std::max(area.top(), std::min(centred.y(), last.y())));
}

void frmMain::showEvent(QShowEvent *event)
{
    nameByState(std::numeric_limits<int>::max());
    QMainWindow::showEvent(event);
    windowHandle()->installEventFilter(this);
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        Form_Resize();
    // Now the frame is known, and nothing has been painted yet.
    if (watched == windowHandle() && event->type() == QEvent::Expose) {
        watched->removeEventFilter(this);
        if (windowState() == Qt::WindowNoState)
            placeOnScreen(windowHandle()->frameMargins());
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        Form_Resize();
}

/// Keeps the large board's margins to the right and the bottom of the client area. On a screen that is
/// smaller than the least size the board keeps that size.
void frmMain::Form_Resize()
{
    if (isMinimized())
        return;
    const double dpi = m_client->logicalDpiX();
    const int width = std::max(m_client->width(), pixels(mainDesign::leastClientWidth, dpi));
    const int height = std::max(m_client->height(), pixels(mainDesign::leastClientHeight, dpi));
    const int bottom = height - pixels(mainDesign::boardBottomMargin, dpi);
    const int right = width - pixels(mainDesign::boardRightMargin, dpi);
    RTB1->resize(RTB1->width(), bottom - RTB1->y());
    RTB2->resize(right - RTB2->x(), bottom - RTB2->y());
    RTB1->showStart();
    RTB2->showStart();
}
