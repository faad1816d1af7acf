#pragma once

#include <QTextEdit>

namespace controls {

/// A display of styled text in large type. It is written by the program only: the user can neither change nor
/// select its text, and a click on it leaves the keyboard focus where it was; Tab reaches it.
///
/// Line breaks are CR LF, and every position counts CR and LF as one character each. Sizes are in points.
class RichTextBox : public QTextEdit
{
    Q_OBJECT

public:
    /// A run of characters. What lies past the end of the text is left out.
    struct Range
    {
        int start = 0;
        int length = 0;
    };

    explicit RichTextBox(QWidget *parent = nullptr);

    /// Replaces the text; it is black, aligned left and in the box's own font.
    void setText(const QString &text);
    QString text() const;
    /// The whole text.
    Range all() const;

    void setColor(Range range, QRgb color);
    void setAlignment(Range range, Qt::Alignment alignment);
    void setFontSize(Range range, double points);
    /// Makes letters narrower or wider, `percent` of their own width, without changing their height.
    void setLetterWidth(Range range, int percent);
    /// Makes every line of the text `pixels` high, the letters at its top. All letters must be of one size.
    void setLineHeight(int pixels);
    /// The colour of the character at `position`; black where nothing else was set.
    QRgb colorAt(int position) const;
    /// The size in points of the character at `position`.
    double fontSizeAt(int position) const;

    /// Sets the box's own font size, which text takes that has none of its own.
    void setBaseFont(const QFont &font);
    void setBackColor(QRgb color);

    /// Brings the beginning of the text into view and leaves nothing selected.
    void showStart();
    /// From now on shows the same lines as `leader`, whose wheel and scroll bar move both.
    void followScrolling(RichTextBox *leader);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    int documentPosition(int position) const;
    QTextCursor cursorOver(Range range) const;
    void merge(Range range, const QTextCharFormat &format);
    QTextCharFormat formatAt(int position) const;
    bool scrolls() const;
    void matchScrolling();

    RichTextBox *m_leader = nullptr;
};

} // namespace controls
