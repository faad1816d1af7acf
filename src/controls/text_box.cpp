#include "text_box.h"

#include "appearance.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QOperatingSystemVersion>
#include <QPainter>

namespace controls {

namespace {

/// The modifiers that make a command of a key. AltGr makes none; Windows reports it as Ctrl and Alt.
Qt::KeyboardModifiers commandModifiers(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held =
        event.modifiers() & (Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier);
    const bool isAltGr = QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows &&
                         held == (Qt::AltModifier | Qt::ControlModifier);
    return isAltGr ? Qt::NoModifier : held;
}

} // namespace

void TextBox::setSeeThrough(bool seeThrough)
{
    m_seeThrough = seeThrough;
    setFrame(!seeThrough);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, seeThrough ? Qt::transparent : Qt::white);
    setPalette(colors);
}

/// Shows a typed character to the owner. True when the owner swallowed it.
bool TextBox::swallowed(QChar character)
{
    int code = character.unicode();
    Q_EMIT keyPress(code);
    return code == 0;
}

void TextBox::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers held = commandModifiers(*event);
    const QString text = event->text();
    if (held & (Qt::AltModifier | Qt::MetaModifier) && !text.isEmpty() && text.front().isPrint())
        event->ignore(); // QLineEdit would type it
    else if (held || text.size() != 1 || !swallowed(text.front()))
        QLineEdit::keyPressEvent(event);
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
    if (m_seeThrough && !text().isEmpty())
        QPainter(this).fillRect(rect(), Qt::white);
    QLineEdit::paintEvent(event);
    if (!m_seeThrough)
        return;
    QPainter painter(this);
    // Both colours stand out from a black cell and from a white one.
    fillFrame(painter, rect(), 1, hasFocus() ? 0xFF2F80D0 : colors::edge);
}

} // namespace controls
