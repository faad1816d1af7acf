#include "rich_text_box.h"

#include "appearance.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>

#include <algorithm>

namespace controls {

RichTextBox::RichTextBox(QWidget *parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::NoTextInteraction);
    setFocusPolicy(Qt::TabFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setUndoRedoEnabled(false);
    setCursorWidth(0);
    viewport()->setCursor(Qt::ArrowCursor);
    setLineWrapMode(QTextEdit::WidgetWidth); // centred text is centred in that
    setWordWrapMode(QTextOption::NoWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
    QPalette face = palette();
    face.setColor(QPalette::Base, colors::buttonFace);
    setPalette(face);
}

void RichTextBox::setText(const QString &text, const QColor &color, Qt::Alignment alignment)
{
    QTextBlockFormat lines;
    lines.setAlignment(alignment);
    QTextCharFormat letters;
    if (color.isValid())
        letters.setForeground(color);
    QTextCursor edit(document());
    edit.beginEditBlock(); // laid out once
    edit.select(QTextCursor::Document);
    edit.setBlockFormat(lines);
    edit.setBlockCharFormat({});
    edit.insertText(text, letters);
    edit.endEditBlock();
    document()->setLayoutEnabled(!text.isEmpty()); // an empty text needs no font
    showStart();
}

QTextCursor RichTextBox::cursorOver(Range range) const
{
    QTextCursor cursor(document());
    const int end = all().length;
    cursor.setPosition(std::min(range.start, end));
    cursor.setPosition(std::min(range.start + range.length, end), QTextCursor::KeepAnchor);
    return cursor;
}

void RichTextBox::setLineHeight(int pixels)
{
    document()->setTextWidth(viewport()->width()); // else nothing has a height before the first showing
    const double natural = document()->documentLayout()->blockBoundingRect(document()->firstBlock()).height();
    QTextBlockFormat format;
    format.setLineHeight(pixels - natural, QTextBlockFormat::LineDistanceHeight);
    cursorOver(all()).mergeBlockFormat(format);
}

void RichTextBox::set(Range range, QTextFormat::Property property, const QVariant &value)
{
    QTextCharFormat format;
    format.setProperty(property, value);
    cursorOver(range).mergeCharFormat(format);
}

QColor RichTextBox::colorAt(int position) const
{
    const QBrush brush = cursorOver({position, 1}).charFormat().foreground();
    return brush.style() == Qt::NoBrush ? QColor(Qt::black) : brush.color();
}

void RichTextBox::showNeededBars()
{
    for (const Qt::ScrollBarPolicy policy : {Qt::ScrollBarAlwaysOff, Qt::ScrollBarAsNeeded}) {
        setHorizontalScrollBarPolicy(policy);
        setVerticalScrollBarPolicy(policy);
    }
}

void RichTextBox::showStart()
{
    setTextCursor(QTextCursor(document()));
    verticalScrollBar()->setValue(0);
    const bool isCentred = document()->firstBlock().blockFormat().alignment() & Qt::AlignHCenter;
    horizontalScrollBar()->setValue(isCentred ? horizontalScrollBar()->maximum() / 2 : 0);
}

void RichTextBox::followScrolling(RichTextBox *leader)
{
    m_leader = leader;
    connect(leader->verticalScrollBar(), &QScrollBar::valueChanged, this, &RichTextBox::matchScrolling);
    connect(leader->verticalScrollBar(), &QScrollBar::rangeChanged, this, &RichTextBox::matchScrolling);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &RichTextBox::matchScrolling);
}

void RichTextBox::matchScrolling()
{
    QScrollBar *bar = verticalScrollBar();
    const QScrollBar *leader = m_leader->verticalScrollBar();
    const QSignalBlocker quiet(bar);
    // A bar of its own may make the leader smaller.
    bar->setMaximum(std::max(bar->maximum(), leader->maximum()));
    bar->setValue(leader->value());
    viewport()->update();
}

void RichTextBox::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(viewport());
    fillFrame(painter, viewport()->rect(), 1, colors::highlight);
}

void RichTextBox::wheelEvent(QWheelEvent *event)
{
    if (m_leader)
        m_leader->wheelEvent(event);
    else if (scrolls())
        QTextEdit::wheelEvent(event);
    else
        event->ignore();
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    if (scrolls())
        QTextEdit::keyPressEvent(event);
    else
        event->ignore();
}

bool RichTextBox::event(QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        viewport()->update(); // its frame comes or goes
    return QTextEdit::event(event);
}

} // namespace controls
