#include "text_box.h"

#include "colors.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>

namespace controls {

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
    painter.setPen(QColor::fromRgb(hasFocus() ? 0xFF2F80D0 : colors::edge));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace controls
