#include "frmMain.h"

#include "frmMain_design.h"
#include "rich_text_box.h"
#include "units.h"

#include <QEvent>
#include <QMenuBar>
#include <QScreen>

#include <algorithm>

using controls::pixels;

/// The design's size, or less where the screen has not the room for it.
void frmMain::setDesignSize()
{
    const double dpi = logicalDpiX();
    const int bar = menuBar()->sizeHint().height();
    const QSize design(pixels(mainDesign::clientWidth, dpi), pixels(mainDesign::clientHeight, dpi) + bar);
    const QSize least(controls::pixelsUp(mainDesign::leastClientWidth, dpi),
                      controls::pixelsUp(mainDesign::leastClientHeight, dpi));
    m_client->setMinimumSize(least);
    resize(design.boundedTo(screen()->availableSize()).expandedTo(least + QSize(0, bar)));
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        Form_Resize();
    return QMainWindow::eventFilter(watched, event);
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
