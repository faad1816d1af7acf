#pragma once

#include <QComboBox>

namespace controls {

class TextBox;

/// A combo box that the mouse wheel changes only while it has the focus.
class ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBox(QWidget *parent = nullptr);
    /// Makes the box editable; its text box answers for typed characters.
    TextBox *makeEditable();

protected:
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace controls
