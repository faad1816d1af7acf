#pragma once

#include <QPushButton>

namespace controls {

/// A push button that is filled with exactly the back colour that it is given. A flat one is a small box that
/// shows nothing else, and does not answer Enter.
class ColorButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ColorButton(QWidget *parent, bool flat = false);
    void setBackColor(const QColor &color);
    QColor backColor() const { return palette().color(QPalette::Button); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace controls
