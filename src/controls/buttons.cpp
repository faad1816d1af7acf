#include "buttons.h"

#include "colors.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace controls {

namespace {

/// A one-pixel frame, light at the top left and dark at the bottom right, or the other way round when
/// pressed.
void drawEdge(QPainter &painter, const QRect &rect, bool pressed)
{
    const QRect edge = rect.adjusted(0, 0, -1, -1);
    painter.setPen(QColor::fromRgb(pressed ? 0xFF505050 : colors::white));
    painter.drawLine(edge.topLeft(), edge.topRight());
    painter.drawLine(edge.topLeft(), edge.bottomLeft());
    painter.setPen(QColor::fromRgb(pressed ? colors::white : 0xFF696969));
    painter.drawLine(edge.bottomLeft(), edge.bottomRight());
    painter.drawLine(edge.topRight(), edge.bottomRight());
}

void drawFocus(QPainter &painter, const QRect &rect)
{
    painter.setPen(QPen(QColor::fromRgb(colors::highlight), 2));
    painter.drawRect(rect.adjusted(2, 2, -2, -2));
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
    painter.setPen(QColor::fromRgb(colors::edge));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    if (hasFocus())
        drawFocus(painter, rect());
}

} // namespace controls
