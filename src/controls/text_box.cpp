#include "text_box.h"

#include "appearance.h"

#include <QKeyEvent>
#include <QOperatingSystemVersion>
#include <QPainter>
#include <QRegularExpression>

#include <utility>

namespace controls {

constexpr bool isWindows = QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows;

/// The modifiers that make a key a command. AltGr does not; Windows reports it as Ctrl and Alt.
static Qt::KeyboardModifiers commandModifiers(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held =
        event.modifiers() & (Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier);
    const bool isAltGr = isWindows && held == (Qt::AltModifier | Qt::ControlModifier);
    return isAltGr ? Qt::NoModifier : held;
}

QChar typedCharacter(const QKeyEvent &event)
{
    if (commandModifiers(event) || event.text().size() != 1)
        return {};
    const quint32 place = event.nativeScanCode() - (isWindows ? 0 : 8); // X11 and Wayland count from 8
    const QChar typed = event.text().front();
    const bool isForeign = typed.script() > QChar::Script_Latin;
    if (isForeign && place == 19)
        return u'R';
    return isForeign && place == 25 ? QChar(u'P') : typed;
}

TextBox::TextBox(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, &TextBox::enterFirstLine);
}

QVariant TextBox::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImEnabled && !testAttribute(Qt::WA_InputMethodEnabled))
        return false;
    return QLineEdit::inputMethodQuery(query);
}

void TextBox::setSeeThrough()
{
    m_seeThrough = true;
    setFrame(false);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
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
    enterIfDue();
    const bool isCommand = commandModifiers(*event) & (Qt::AltModifier | Qt::MetaModifier);
    const QChar typed = typedCharacter(*event);
    if (isCommand && !event->text().isEmpty() && event->text().front().isPrint())
        event->ignore(); // QLineEdit would type it
    else if (typed.isNull() || !swallowed(typed))
        QLineEdit::keyPressEvent(event);
    enterIfDue(); // what the key pasted
}

void TextBox::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    enterIfDue(); // what the middle button pasted
}

void TextBox::inputMethodEvent(QInputMethodEvent *event)
{
    const QString typed = event->commitString();
    if (typed.size() == 1 && event->replacementLength() == 0 && swallowed(typed.front()))
        event->setCommitString({});
    QLineEdit::inputMethodEvent(event);
}

/// Enter comes when the paste is done, and for a dropped line a moment later, but before the next key: a
/// handler that asks a question would keep the program waiting that the text was dragged from.
void TextBox::enterFirstLine(const QString &edited)
{
    static const QRegularExpression lineBreak(QStringLiteral("[\\n\\r\\x{2028}\\x{2029}]"));
    if (!edited.contains(lineBreak))
        return;
    setText(edited.split(lineBreak, Qt::SkipEmptyParts).value(0));
    m_isEnterDue = true;
    QMetaObject::invokeMethod(this, &TextBox::enterIfDue, Qt::QueuedConnection);
}

void TextBox::enterIfDue()
{
    if (std::exchange(m_isEnterDue, false))
        swallowed(QChar(enter));
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
