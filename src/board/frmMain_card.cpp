#include "frmMain.h"

#include "catalogue.h"
#include "colors.h"
#include "controls.h"
#include "frmMain_design.h"
#include "numbers.h"
#include "units.h"

#include <algorithm>

namespace {

using patterns::cardSide;

/// Pixels from one line of cells to the next, counted from the edge of the first.
int start(int index, int size, double dpi)
{
    return controls::pixels(index * (size + mainDesign::cellGap), dpi);
}

/// The size of a cell, in one direction, with which no two neighbours touch although their places are rounded
/// to whole pixels.
int cellSize(int size, double dpi)
{
    int pitch = start(1, size, dpi);
    for (int i = 1; i + 1 < cardSide; ++i)
        pitch = std::min(pitch, start(i + 1, size, dpi) - start(i, size, dpi));
    return pitch - std::max(1, controls::pixels(mainDesign::cellGap, dpi));
}

} // namespace

void frmMain::BuildDemo()
{
    const controls::DesignRow first = mainDesign::row("tDemo(1)");
    const double dpi = m_client->logicalDpiX();
    const QPoint origin = tDemo(1)->pos();
    const QSize size(cellSize(first.width, dpi), cellSize(first.height, dpi));
    for (int i = 1; i <= patterns::cellCount; ++i) {
        if (i > 1) {
            auto *cell = new controls::ColorBox(tDemo(1)->parentWidget());
            cell->setObjectName(controlName("tDemo", i));
            m_tDemo[static_cast<std::size_t>(i)] = cell;
            setTabOrder(tDemo(i - 1), cell);
        }
        const QPoint place(start((i - 1) % cardSide, first.width, dpi),
                           start((i - 1) / cardSide, first.height, dpi));
        tDemo(i)->setGeometry({origin + place, size});
        connect(tDemo(i), &controls::ColorBox::clicked, this, [this, i] { tDemo_Click(i); });
        paintCell(i, false);
    }
}

void frmMain::paintCell(int index, bool lit)
{
    tDemo(index)->setBackColor(lit ? controls::colors::black : controls::colors::white);
    tDemo(index)->setAccessibleName(QStringLiteral("Pattern row %1, column %2, %3")
                                        .arg((index - 1) / cardSide + 1)
                                        .arg(QChar(game::columnLetter((index - 1) % cardSide)))
                                        .arg(lit ? QStringLiteral("lit") : QStringLiteral("unlit")));
}

/// Shows a pattern. A cell that keeps its colour is not painted anew, and none is painted before all have
/// theirs.
void frmMain::paintCard(const patterns::Grid &grid)
{
    for (int i = 1; i <= patterns::cellCount; ++i)
        paintCell(i, grid.lit(i));
}

void frmMain::tDemo_Click(int Index)
{
    paintCell(Index, tDemo(Index)->backColor() == controls::colors::white);
    Text1->setFocus();
}
