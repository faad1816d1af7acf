#include "controls.h"

#include "appearance.h"
#include "colors.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QWheelEvent>

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

Label::Label(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void Label::setCaption(const QString &caption)
{
    setText(caption);
    adjustSize();
}

PushButton::PushButton(QWidget *parent)
    : QPushButton(parent)
{
    setAutoDefault(true);
}

void PushButton::keyPressEvent(QKeyEvent *event)
{
    if (event->isAutoRepeat() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        event->accept();
    else
        QPushButton::keyPressEvent(event);
}

ColorButton::ColorButton(QWidget *parent)
    : PushButton(parent)
    , m_backColor(colors::buttonFace)
{
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

TextBox::TextBox(QWidget *parent)
    : QLineEdit(parent)
{
}

void TextBox::setSeeThrough(bool seeThrough)
{
    m_seeThrough = seeThrough;
    setFrame(!seeThrough);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, seeThrough ? QColor(Qt::transparent) : QColor(Qt::white));
    setPalette(colors);
}

/// Offers a typed character to the owner and answers whether it is to go no further.
bool TextBox::swallowed(QChar character)
{
    int code = character.unicode();
    Q_EMIT keyPress(code);
    return code == 0;
}

void TextBox::keyPressEvent(QKeyEvent *event)
{
    if (event->isAutoRepeat() && event->key() == m_swallowedKey) {
        event->accept();
        return;
    }
    const bool isCharacter =
        event->text().size() == 1 &&
        !(event->modifiers() & (Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier));
    m_swallowedKey = 0;
    if (isCharacter && swallowed(event->text().front())) {
        m_swallowedKey = event->key();
        event->accept();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void TextBox::inputMethodEvent(QInputMethodEvent *event)
{
    const QString typed = event->commitString();
    if (typed.size() == 1 && event->replacementLength() == 0 && swallowed(typed.front()))
        event->setCommitString({});
    QLineEdit::inputMethodEvent(event);
}

void TextBox::paintEvent(QPaintEvent *event)
{
    if (!m_seeThrough) {
        QLineEdit::paintEvent(event);
        return;
    }
    if (!text().isEmpty()) {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
    }
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    // Neither colour is nearer to black or to white than the eye can tell apart.
    fillFrame(painter, rect(), 1, QColor::fromRgb(hasFocus() ? 0xFF2F80D0 : colors::edge));
}

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
