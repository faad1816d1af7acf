#include "combo_box.h"

#include "numeric.h"
#include "text_box.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWheelEvent>

#include <limits>

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

/// The first entry that is greater than the number in the box, or the last one that is smaller; -1 when there
/// is none. Every entry is greater than a text that is no number.
int ComboBox::entryBeside(Step step) const
{
    const double number =
        files::parseNumber(currentText()).value_or(-std::numeric_limits<double>::infinity());
    int smaller = -1;
    for (int i = 0; i < count(); ++i) {
        const double entry = itemText(i).toDouble();
        if (entry > number && step == Step::Greater)
            return i;
        if (entry < number)
            smaller = i;
    }
    return step == Step::Smaller ? smaller : -1;
}

void ComboBox::choose(Step step)
{
    const int entry = entryBeside(step);
    if (entry < 0)
        return;
    setCurrentIndex(entry);
    Q_EMIT activated(entry);
}

void ComboBox::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = !(event->modifiers() & (Qt::AltModifier | Qt::ControlModifier));
    const int key = event->key();
    if (isEditable() && isPlain && (key == Qt::Key_Down || key == Qt::Key_PageDown))
        choose(Step::Greater);
    else if (isEditable() && isPlain && (key == Qt::Key_Up || key == Qt::Key_PageUp))
        choose(Step::Smaller);
    else
        QComboBox::keyPressEvent(event);
}

void ComboBox::wheelEvent(QWheelEvent *event)
{
    if (!hasFocus())
        event->ignore();
    else if (!isEditable())
        QComboBox::wheelEvent(event);
    else if (event->angleDelta().y() != 0)
        choose(event->angleDelta().y() < 0 ? Step::Greater : Step::Smaller);
}

void ComboBox::showPopup()
{
    if (!isEditable()) {
        QComboBox::showPopup();
        return;
    }
    const QString text = currentText();
    setCurrentIndex(findText(text));
    setEditText(text);
    view()->installEventFilter(this);
    QComboBox::showPopup();
    if (currentIndex() < 0) // nothing is selected; show the place where the number would stand
        view()->selectionModel()->setCurrentIndex(
            listItem(entryBeside(Step::Greater) < 0 ? Step::Smaller : Step::Greater),
            QItemSelectionModel::NoUpdate);
}

QModelIndex ComboBox::listItem(Step step) const
{
    return model()->index(entryBeside(step), modelColumn());
}

bool ComboBox::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (isKey && watched == view() && !view()->selectionModel()->hasSelection())
        return unselectedListKey(static_cast<QKeyEvent &>(*event));
    return QComboBox::eventFilter(watched, event);
}

/// A key for a list in which nothing is selected, since the text in the box is none of its entries. Closing
/// it with a key chooses nothing; Qt would choose the first entry. True for a key that goes no further.
bool ComboBox::unselectedListKey(QKeyEvent &event)
{
    const int key = event.key();
    const bool isArrow = key == Qt::Key_Down || key == Qt::Key_Up;
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F4 ||
        (isArrow && event.modifiers() & Qt::AltModifier)) {
        event.accept();
        hidePopup();
        return true;
    }
    if (!isArrow || event.type() == QEvent::ShortcutOverride)
        return false;
    view()->setCurrentIndex(listItem(key == Qt::Key_Down ? Step::Greater : Step::Smaller));
    return true;
}

} // namespace controls
