#include "combo_box.h"

#include "text_box.h"

#include <QWheelEvent>

namespace controls {

ComboBox::ComboBox(QWidget *parent)
    : QComboBox(parent)
{
    // A wheel that turns over the box must not give it the focus either.
    setFocusPolicy(Qt::StrongFocus);
}

TextBox *ComboBox::makeEditable()
{
    auto *box = new TextBox(this);
    setEditable(true);
    setLineEdit(box);
    // A text that is left in the box is not an entry that was chosen.
    disconnect(box, &QLineEdit::editingFinished, this, nullptr);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    return box;
}

void ComboBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace controls
