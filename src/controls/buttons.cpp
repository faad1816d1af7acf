#include "buttons.h"

#include "appearance.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace controls {

namespace {

/// Light at the top left and dark at the bottom right, or the other way round when pressed.
void drawEdge(QPainter &painter, const QRect &rect, bool pressed)
{
    const QColor light = QColor::fromRgb(colors::white);
    if (pressed)
        fillFrame(painter, rect, 1, QColor::fromRgb(0xFF505050), light);
    else
        fillFrame(painter, rect, 1, light, QColor::fromRgb(0xFF696969));
}

void drawFocus(QPainter &painter, const QRect &rect)
{
    fillFrame(painter, rect.adjusted(1, 1, -1, -1), 2, QColor::fromRgb(colors::highlight));
}

} // namespace

ColorButton::ColorButton(QWidget *parent)
    : QPushButton(parent)
    , m_backColor(colors::buttonFace)
{
    setAutoDefault(true); // Enter presses it as Space does
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ColorButton::setBackColor(QRgb color)
{
    if (color == m_backColor)
        return;
    m_backColor = color;
    QPalette colors = palette();
    colors.setColor(QPalette::Button, QColor::fromRgb(color));
    setPalette(colors);
    update();
}

void ColorButton::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const bool pressed = option.state.testFlag(QStyle::State_Sunken);
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(m_backColor));
    drawEdge(painter, rect(), pressed);
    if (option.state.testFlag(QStyle::State_HasFocus))
        drawFocus(painter, rect());
    painter.setPen(option.palette.color(QPalette::ButtonText));
    painter.drawText(pressed ? rect().translated(1, 1) : rect(), Qt::AlignCenter | Qt::TextDontClip, text());
}

ColorBox::ColorBox(QWidget *parent)
    : QAbstractButton(parent)
    , m_backColor(colors::white)
{
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ColorBox::setBackColor(QRgb color)
{
    if (color == m_backColor)
        return;
    m_backColor = color;
    QPalette colors = palette();
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button})
        colors.setColor(role, QColor::fromRgb(color));
    setPalette(colors);
    update();
}

void ColorBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(m_backColor));
    fillFrame(painter, rect(), 1, QColor::fromRgb(colors::edge));
    if (hasFocus())
        drawFocus(painter, rect());
}

} // namespace controls
