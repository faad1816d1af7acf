#include "frmMain.h"

#include "appearance.h"
#include "frmBingo.h"
#include "frmMain_design.h"
#include "tool_window.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

using controls::pixels;
using controls::pixelsUp;

/// Whether two sizes are the same but for a pixel, as desktops round them to whole device pixels.
static bool isAbout(QSize one, QSize other)
{
    return std::abs(one.width() - other.width()) <= 1 && std::abs(one.height() - other.height()) <= 1;
}

/// Fits the window to its screen and centres it on the whole of it, but inside the work area. `frame` is what
/// the desktop puts around the window.
void frmMain::placeOnScreen(QMargins frame)
{
    fit(frame);
    const QRect whole = screen()->geometry();
    const QSize space = whole.size() - size().grownBy(frame);
    controls::moveInside(this, whole.topLeft() + QPoint(space.width(), space.height()) / 2, frame);
}

/// Follows the window to another screen, and each change of a screen's scale or work area: a tenth of a
/// second later, for a system tells of one change in several steps, and Windows resizes the windows between
/// them.
void frmMain::watchScreens()
{
    auto *settled = new QTimer(this);
    settled->setSingleShot(true);
    settled->setInterval(100);
    connect(settled, &QTimer::timeout, this, &frmMain::followScreen);
    const auto again = qOverload<>(&QTimer::start);
    const auto watch = [=, this](const QScreen *screen) {
        connect(screen, &QScreen::availableGeometryChanged, settled, again);
        connect(screen, &QScreen::logicalDotsPerInchChanged, settled, again);
    };
    for (const QScreen *screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    connect(windowHandle(), &QWindow::screenChanged, settled, again);
}

/// Fits the window to its screen again when the screen's scale or its work area has changed.
void frmMain::followScreen()
{
    if (devicePixelRatioF() == m_ratio && screen()->availableSize() == m_area)
        return;
    QApplication::setFont(controls::sansFont());
    fit(windowHandle()->frameMargins());
    controls::refitWindows();
    if (m_bingo)
        m_bingo->cover();
}

/// Draws the design smaller where the work area cannot hold all of it. A window that the user has resized
/// keeps its size as far as it fits.
void frmMain::fit(QMargins frame)
{
    const double formerScale = m_scale;
    const double formerRatio = std::exchange(m_ratio, devicePixelRatioF());
    m_area = screen()->availableSize();
    const QSize bar(0, menuBar()->sizeHint().height());
    const QSize available = m_area.shrunkBy(frame) - bar;
    const QSize ownSize = m_ownSize; // which the steps below may change
    const QSize full(pixels(mainDesign::clientWidth), pixels(mainDesign::clientHeight));
    const int percent =
        std::min({100, 100 * available.width() / full.width(), 100 * available.height() / full.height()});
    m_scale = percent / 100.0; // whole steps: frames are a pixel wider or narrower from one scale to the next
    if (m_scale != formerScale || m_ratio != formerRatio)
        layOut();
    m_client->setMinimumSize(pixelsUp(mainDesign::leastClientWidth, m_scale),
                             pixelsUp(mainDesign::leastClientHeight, m_scale));
    m_isRefitDue = windowState() != Qt::WindowNoState;
    const QSize wanted = (ownSize.isEmpty() ? designSize() : ownSize.boundedTo(available)) + bar;
    if (!m_isRefitDue && !isAbout(wanted, size()))
        resize(wanted);
}

/// Gives all controls their places and their letters' sizes. Those that start-up makes later get them there.
void frmMain::layOut()
{
    m_client->setFont(controls::sansFont(8.0 * m_scale));
    for (const controls::DesignRow &row : mainDesign::rows())
        controls::place(controls::control<QWidget>(m_client, row.name), row, m_scale);
    for (int n = 1; n <= game::numberCount && cButt[n]; ++n)
        controls::place(cButt[n], mainDesign::numberButton(n), m_scale);
    for (int i = 1; i <= patterns::patternCount; ++i)
        controls::place(cDemoButt[i], mainDesign::patternButton(i), m_scale);
    if (m_card)
        m_card->place(mainDesign::row("tDemo(1)"), m_scale);
    Form_Resize();
    setDisplayFonts();
}

QSize frmMain::designSize() const
{
    return {pixels(mainDesign::clientWidth, m_scale), pixels(mainDesign::clientHeight, m_scale)};
}

/// Remembers a size that the user has given the window. Between a change of scale and the next `fit` it is
/// only the old size in new pixels, and is not remembered.
void frmMain::rememberSize()
{
    if (!m_isPlaced || windowState() != Qt::WindowNoState || devicePixelRatioF() != m_ratio)
        return;
    m_ownSize = isAbout(m_client->size(), designSize()) ? QSize() : m_client->size();
}

void frmMain::showEvent(QShowEvent *event)
{
    nameByState(std::numeric_limits<int>::max());
    QMainWindow::showEvent(event);
    if (!m_isPlaced) // the system shows a minimized window once more
        windowHandle()->installEventFilter(this);
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == cPause && event->type() == QEvent::KeyPress)
        return typedAtPause(static_cast<QKeyEvent &>(*event));
    if (watched == m_client && event->type() == QEvent::Resize) {
        rememberSize();
        Form_Resize();
    }
    // Now the frame is known, and nothing has been painted yet.
    if (watched == windowHandle() && event->type() == QEvent::Expose) {
        watched->removeEventFilter(this);
        m_isPlaced = true;
        if (windowState() == Qt::WindowNoState)
            placeOnScreen(windowHandle()->frameMargins());
        Form_Resize(); // which bars the large board needs is known only now
        watchScreens();
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    Form_Resize();
    if (windowState() == Qt::WindowNoState && m_isRefitDue) {
        fit(windowHandle()->frameMargins());
        controls::refitWindows();
    }
}

/// Keeps the large board's margins to the right and the bottom of the client area. On a screen that is
/// smaller than the least size the board keeps that size.
void frmMain::Form_Resize()
{
    if (isMinimized())
        return;
    const int width = std::max(m_client->width(), pixels(mainDesign::leastClientWidth, m_scale));
    const int height = std::max(m_client->height(), pixels(mainDesign::leastClientHeight, m_scale));
    const int bottom = height - pixels(mainDesign::boardBottomMargin, m_scale);
    const int right = width - pixels(mainDesign::boardRightMargin, m_scale);
    RTB1->resize(RTB1->width(), bottom - RTB1->y());
    RTB2->resize(right - RTB2->x(), bottom - RTB2->y());
    RTB2->showNeededBars();
    RTB1->showStart();
    RTB2->showStart();
}
