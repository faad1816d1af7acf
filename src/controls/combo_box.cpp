#include "combo_box.h"

#include "numeric.h"
#include "text_box.h"

#include <QAbstractItemView>
#include <QKeyEvent>

#include <utility>

namespace controls {

ComboBox::ComboBox(QWidget *parent, bool editable)
    : QComboBox(parent)
{
    setFocusPolicy(editable ? Qt::StrongFocus : Qt::TabFocus);
    if (!editable)
        return;
    setLineEdit(new TextBox(this)); // which makes it editable
    // A text that is left in the box is not an entry that was chosen.
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
}

/// The nearest entry on one side of the number in the box (0 where that is no number); -1 when there is none.
int ComboBox::entryBeside(Step step) const
{
    const double number = base::parseNumber(currentText()).value_or(0.0);
    for (int i = step == Greater ? 0 : count() - 1; i >= 0 && i < count(); i += step) {
        const double entry = itemText(i).toDouble();
        if (step == Greater ? entry > number : entry < number)
            return i;
    }
    return -1;
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
    const bool steps = isEditable() && !(event->modifiers() & (Qt::AltModifier | Qt::ControlModifier));
    const int key = event->key();
    if (steps && (key == Qt::Key_Down || key == Qt::Key_PageDown))
        choose(Greater);
    else if (steps && (key == Qt::Key_Up || key == Qt::Key_PageUp))
        choose(Smaller);
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
        choose(event->angleDelta().y() < 0 ? Greater : Smaller);
}

void ComboBox::showPopup()
{
    if (isEditable()) {
        const QString text = currentText();
        setCurrentIndex(findText(text));
        setEditText(text);
    }
    view()->installEventFilter(this);
    view()->window()->installEventFilter(this);
    QComboBox::showPopup();
    if (currentIndex() >= 0)
        return;
    const int greater = entryBeside(Greater); // the place where the number would stand is shown, not selected
    view()->selectionModel()->setCurrentIndex(model()->index(greater < 0 ? count() - 1 : greater, 0),
                                              QItemSelectionModel::NoUpdate);
}

bool ComboBox::isInText(QPointF onScreen) const
{
    return isEditable() && lineEdit()->rect().contains(lineEdit()->mapFromGlobal(onScreen.toPoint()));
}

/// Keys for a list in which nothing is selected, since the text in the box is none of its entries. A key that
/// closes it chooses nothing; Qt would empty the box. And tells that the list closes, unless by a press on
/// the text, into which the user will type.
bool ComboBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress)
        m_isTextPressed = isInText(static_cast<QMouseEvent *>(event)->globalPosition());
    if (event->type() == QEvent::Hide && watched == view() && !std::exchange(m_isTextPressed, false))
        Q_EMIT listClosed();
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!isKey || watched != view() || view()->selectionModel()->hasSelection())
        return QComboBox::eventFilter(watched, event);
    const auto &press = static_cast<const QKeyEvent &>(*event);
    const int key = press.key();
    const bool isArrow = key == Qt::Key_Down || key == Qt::Key_Up;
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isEnter || key == Qt::Key_F4 || (isArrow && press.modifiers() & Qt::AltModifier)) {
        event->accept();
        hidePopup();
        return true;
    }
    if (!isArrow || event->type() == QEvent::ShortcutOverride)
        return false;
    view()->setCurrentIndex(model()->index(entryBeside(key == Qt::Key_Down ? Greater : Smaller), 0));
    return true;
}

} // namespace controls
