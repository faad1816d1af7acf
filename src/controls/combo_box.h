#pragma once

#include <QComboBox>

namespace controls {

/// A combo box that the mouse wheel changes only while it has the focus, which a click gives to one that is
/// editable. The entries of an editable one are numbers, the smallest first. Arrow keys, the wheel and the
/// list start from the text in the box, not from the entry that was chosen last.
class ComboBox : public QComboBox
{
    Q_OBJECT

public:
    /// The lineEdit of an editable one is a TextBox.
    ComboBox(QWidget *parent, bool editable);
    void showPopup() override;

Q_SIGNALS:
    /// The list closes, but not by a press on the text in the box. If an entry was chosen, activated()
    /// follows.
    void listClosed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum Step { Smaller = -1, Greater = 1 };

    int entryBeside(Step step) const;
    void choose(Step step);
    bool isInText(QPointF onScreen) const;

    bool m_isTextPressed = false; // and so the list closes
};

} // namespace controls
