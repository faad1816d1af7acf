#pragma once

#include <QTextEdit>

namespace controls {

/// A display of styled text on button face, which the user can neither change nor select. Tab gives it the
/// focus, a click does not. Its font is that of all text for which setFontSize set no other size.
class RichTextBox : public QTextEdit
{
    Q_OBJECT

public:
    /// A run of characters, a line break counting as one. What lies past the end of the text is left out.
    struct Range
    {
        int start = 0;
        int length = 0;
    };

    explicit RichTextBox(QWidget *parent = nullptr);

    /// Replaces the text, of which the beginning is shown; it is in the box's own font. Without a colour it
    /// is black, and grey while the box is disabled.
    void setText(const QString &text, const QColor &color = {}, Qt::Alignment alignment = Qt::AlignLeft);
    Range all() const { return {0, document()->characterCount() - 1}; } // the last one ends the document

    void setColor(Range range, const QColor &color)
    {
        set(range, QTextFormat::ForegroundBrush, QBrush(color));
    }
    void setFontSize(Range range, double points) { set(range, QTextFormat::FontPointSize, points); }
    /// Makes letters narrower or wider, `percent` of their own width, without changing their height.
    void setLetterWidth(Range range, int percent) { set(range, QTextFormat::FontStretch, percent); }
    /// Draws the edges of the letters with `pen`, half of it on either side.
    void setOutline(Range range, const QPen &pen) { set(range, QTextFormat::TextOutline, pen); }
    /// Makes every line of the text `pixels` high, the letters at its top. All letters must be of one size.
    void setLineHeight(int pixels);
    /// The colour of the character at `position`; black where nothing else was set.
    QColor colorAt(int position) const;

    /// Lets scroll bars come where the text needs them, and none only because the other covers a strip of it.
    void showNeededBars();
    /// Scrolls to the beginning of the text.
    void showStart();
    /// From now on shows the same lines as `leader`, whose wheel and scroll bar move both.
    void followScrolling(RichTextBox *leader);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool event(QEvent *event) override;

private:
    QTextCursor cursorOver(Range range) const;
    void set(Range range, QTextFormat::Property property, const QVariant &value);
    bool scrolls() const { return verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff; }
    void matchScrolling();

    RichTextBox *m_leader = nullptr;
};

} // namespace controls
