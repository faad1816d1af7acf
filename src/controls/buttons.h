#pragma once

#include <QPushButton>

namespace controls {

/// A push button that is filled with exactly the back colour that it is given.
class ColorButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ColorButton(QWidget *parent = nullptr);
    void setBackColor(QRgb color);
    QRgb backColor() const { return palette().color(QPalette::Button).rgb(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// A small box that shows nothing but a colour and can be clicked.
class ColorBox : public ColorButton
{
    Q_OBJECT

public:
    explicit ColorBox(QWidget *parent = nullptr);
};

} // namespace controls
