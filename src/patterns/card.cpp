#include "card.h"

#include "buttons.h"
#include "design_table.h"
#include "numbers.h"

#include <algorithm>

namespace patterns {

constexpr int gap = 10; // twips between neighbouring cells

namespace {

/// Where the lines of cells begin in one direction, and how large a cell is, in pixels. Places are rounded,
/// so the size is that of the closest neighbours: no two cells touch.
struct Lines
{
    Lines(int size, double scale)
    {
        for (int i = 0; i < cardSide; ++i)
            starts[i] = controls::pixels(i * (size + gap), scale);
        int pitch = starts[1];
        for (int i = 1; i < cardSide; ++i)
            pitch = std::min(pitch, starts[i] - starts[i - 1]);
        cellSize = pitch - std::max(1, controls::pixels(gap, scale));
    }

    int starts[cardSide];
    int cellSize;
};

} // namespace

Card::Card(controls::ColorButton *first)
    : QObject(first)
{
    m_cells[1] = first;
    for (int i = 1; i <= cellCount; ++i) {
        if (i > 1) {
            m_cells[i] = new controls::ColorButton(m_cells[1]->parentWidget(), true);
            m_cells[i]->setObjectName(QStringLiteral("tDemo(%1)").arg(i));
            QWidget::setTabOrder(m_cells[i - 1], m_cells[i]);
        }
        connect(m_cells[i], &controls::ColorButton::clicked, this, [this, i] { Q_EMIT clicked(i); });
    }
    show({});
}

void Card::place(const controls::DesignRow &row, double scale)
{
    const Lines across(row.width, scale);
    const Lines down(row.height, scale);
    const QPoint origin = controls::placed(row, scale).topLeft();
    for (int i = 1; i <= cellCount; ++i) {
        const QPoint place(across.starts[(i - 1) % cardSide], down.starts[(i - 1) / cardSide]);
        m_cells[i]->setGeometry({origin + place, QSize(across.cellSize, down.cellSize)});
    }
}

void Card::show(const QString &drawing)
{
    const QString cells = QString(drawing).remove(u' ');
    for (int i = 1; i <= cellCount; ++i)
        paint(i, cells.mid(i - 1, 1) == u'X');
}

void Card::toggle(int index)
{
    paint(index, !isLit(index));
}

void Card::paint(int index, bool lit)
{
    m_cells[index]->setBackColor(lit ? Qt::black : Qt::white);
}

bool Card::isLit(int index) const
{
    return m_cells[index]->backColor() != Qt::white;
}

QString Card::cellInWords(int index) const
{
    return QStringLiteral("Pattern row %1, column %2, %3")
        .arg((index - 1) / cardSide + 1)
        .arg(game::columnLetters[(index - 1) % cardSide])
        .arg(isLit(index) ? QStringLiteral("lit") : QStringLiteral("unlit"));
}

/// The rows that have lit cells: "Pattern card, row 1 B O, row 5 B O".
QString Card::inWords() const
{
    QString rows;
    int lastRow = 0;
    for (int i = 1; i <= cellCount; ++i) {
        const int row = (i - 1) / cardSide + 1;
        if (!isLit(i))
            continue;
        if (row != lastRow)
            rows += QStringLiteral(", row %1").arg(row);
        rows += QStringLiteral(" ") + game::columnLetters[(i - 1) % cardSide];
        lastRow = row;
    }
    return QStringLiteral("Pattern card") + (rows.isEmpty() ? QStringLiteral(", empty") : rows);
}

} // namespace patterns
