#include "buttons.h"

#include "appearance.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace controls {

ColorButton::ColorButton(QWidget *parent, bool flat)
    : QPushButton(parent)
{
    setFlat(flat);
    setAutoDefault(!flat); // Enter presses it as Space does
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ColorButton::setBackColor(const QColor &color)
{
    if (color == backColor())
        return;
    QPalette colors = palette();
    colors.setColor(QPalette::Button, color);
    setPalette(colors);
}

void ColorButton::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const bool pressed = option.state.testFlag(QStyle::State_Sunken);
    QPainter painter(this);
    painter.fillRect(rect(), backColor());
    if (isFlat())
        fillFrame(painter, rect(), 1, colors::edge);
    else if (pressed)
        fillFrame(painter, rect(), 1, 0xFF505050, Qt::white);
    else
        fillFrame(painter, rect(), 1, Qt::white, 0xFF696969);
    if (option.state.testFlag(QStyle::State_HasFocus))
        fillFrame(painter, rect().adjusted(1, 1, -1, -1), 2, colors::highlight);
    painter.setPen(option.palette.color(QPalette::ButtonText));
    painter.drawText(pressed ? rect().translated(1, 1) : rect(), Qt::AlignCenter | Qt::TextDontClip, text());
}

} // namespace controls
