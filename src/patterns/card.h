#pragma once

#include "catalogue.h"
#include "from_one.h"

#include <QObject>

namespace controls {
class ColorButton;
struct DesignRow;
} // namespace controls

namespace patterns {

/// The 25 cells of the pattern card: shows a drawing, switches single cells and tells of clicks on them. It
/// knows no pattern: its whole state is the colours of its cells, black for lit and white for unlit.
class Card : public QObject
{
    Q_OBJECT

public:
    /// `first` is cell 1 of the design. The other cells are made here.
    explicit Card(controls::ColorButton *first);

    /// Gives all cells their places. `row` is that of cell 1 in the design, drawn `scale` times as large.
    void place(const controls::DesignRow &row, double scale);

    /// Shows a drawing of the catalogue; an empty one lights no cell.
    void show(const QString &drawing);
    /// Switches a cell between lit and unlit. `index` is 1 to 25.
    void toggle(int index);
    controls::ColorButton *cell(int index) const { return m_cells[index]; }
    /// What a cell shows, and what all of them show row by row, as a screen reader is to say it.
    QString cellInWords(int index) const;
    QString inWords() const;

Q_SIGNALS:
    void clicked(int index);

private:
    void paint(int index, bool lit);
    bool isLit(int index) const;

    game::FromOne<controls::ColorButton *, cellCount> m_cells{};
};

} // namespace patterns
