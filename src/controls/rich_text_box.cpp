#include "rich_text_box.h"

#include "appearance.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextFrame>
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
    setLineWrapMode(QTextEdit::WidgetWidth); // which is what centred text is centred in
    setWordWrapMode(QTextOption::NoWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
}

void RichTextBox::setText(const QString &text)
{
    // New text takes the format of the place that it is put into, so that place is made plain first.
    setPlainText({});
    QTextCursor start(document());
    start.setBlockFormat({});
    start.setBlockCharFormat({});
    setTextCursor(start);
    setPlainText(text);
}

QString RichTextBox::text() const
{
    return toPlainText().replace(u'\n', QStringLiteral("\r\n"));
}

RichTextBox::Range RichTextBox::all() const
{
    const int breaks = document()->blockCount() - 1;
    return {0, document()->characterCount() - 1 + breaks};
}

/// The document counts a line break as one character, so every break before `position` takes one off.
int RichTextBox::documentPosition(int position) const
{
    int breaks = 0;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next(), ++breaks) {
        const int end = block.position() + block.length() - 1; // where the line break stands
        if (position - breaks <= end)
            return std::max(0, position - breaks);
        if (position - breaks == end + 1 && block.next().isValid())
            return end; // between CR and LF
    }
    return document()->characterCount() - 1;
}

QTextCursor RichTextBox::cursorOver(Range range) const
{
    QTextCursor cursor(document());
    cursor.setPosition(documentPosition(range.start));
    cursor.setPosition(documentPosition(range.start + range.length), QTextCursor::KeepAnchor);
    return cursor;
}

void RichTextBox::setColor(Range range, QRgb color)
{
    QTextCharFormat format;
    format.setForeground(QColor::fromRgb(color));
    merge(range, format);
}

void RichTextBox::setAlignment(Range range, Qt::Alignment alignment)
{
    QTextBlockFormat format;
    format.setAlignment(alignment);
    cursorOver(range).mergeBlockFormat(format);
}

void RichTextBox::setFontSize(Range range, double points)
{
    QTextCharFormat format;
    format.setFontPointSize(points);
    merge(range, format);
}

void RichTextBox::setLetterWidth(Range range, int percent)
{
    QTextCharFormat format;
    format.setFontStretch(percent);
    merge(range, format);
}

void RichTextBox::setLineHeight(int pixels)
{
    document()->setTextWidth(viewport()->width()); // else nothing has a height before the first showing
    const double natural = document()->documentLayout()->blockBoundingRect(document()->firstBlock()).height();
    QTextBlockFormat format;
    format.setLineHeight(pixels - natural, QTextBlockFormat::LineDistanceHeight);
    cursorOver(all()).mergeBlockFormat(format);
}

/// A line without text keeps its format in its block. Qt lays such a block out afresh only when it is told
/// to.
void RichTextBox::merge(Range range, const QTextCharFormat &format)
{
    QTextCursor cursor = cursorOver(range);
    cursor.mergeCharFormat(format);
    for (QTextBlock block = document()->findBlock(cursor.selectionStart());
         block.isValid() && block.position() < cursor.selectionEnd(); block = block.next()) {
        if (block.length() > 1)
            continue;
        QTextCursor(block).mergeBlockCharFormat(format);
        document()->markContentsDirty(block.position(), block.length());
    }
}

QTextCharFormat RichTextBox::formatAt(int position) const
{
    const QTextBlock block = document()->findBlock(documentPosition(position));
    if (block.length() == 1)
        return block.charFormat();
    QTextCursor cursor(document());
    cursor.setPosition(std::min(documentPosition(position) + 1, block.position() + block.length() - 1));
    return cursor.charFormat();
}

QRgb RichTextBox::colorAt(int position) const
{
    const QBrush brush = formatAt(position).foreground();
    return brush.style() == Qt::NoBrush ? colors::black : brush.color().rgb();
}

double RichTextBox::fontSizeAt(int position) const
{
    const double points = formatAt(position).fontPointSize();
    return points > 0.0 ? points : font().pointSizeF();
}

void RichTextBox::setBaseFont(const QFont &font)
{
    setFont(font);
    document()->setDefaultFont(font);
}

void RichTextBox::setBackColor(QRgb color)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Base, QColor::fromRgb(color));
    setPalette(colors);
}

void RichTextBox::showStart()
{
    QTextCursor start(document());
    setTextCursor(start);
    verticalScrollBar()->setValue(0);
    QScrollBar *across = horizontalScrollBar();
    across->setValue(
        document()->firstBlock().blockFormat().alignment() & Qt::AlignHCenter ? across->maximum() / 2 : 0);
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
    // The leader's own scroll bar takes room from its text; this box needs as much room to scroll.
    const QSignalBlocker quiet(verticalScrollBar());
    verticalScrollBar()->setMaximum(
        std::max(verticalScrollBar()->maximum(), m_leader->verticalScrollBar()->maximum()));
    verticalScrollBar()->setValue(m_leader->verticalScrollBar()->value());
    viewport()->update();
}

bool RichTextBox::scrolls() const
{
    return verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff;
}

void RichTextBox::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(viewport());
    fillFrame(painter, viewport()->rect(), 1, QColor::fromRgb(colors::highlight));
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

void RichTextBox::focusInEvent(QFocusEvent *event)
{
    QTextEdit::focusInEvent(event);
    viewport()->update();
}

void RichTextBox::focusOutEvent(QFocusEvent *event)
{
    QTextEdit::focusOutEvent(event);
    viewport()->update();
}

} // namespace controls
