#pragma once

#include <QLineEdit>

namespace controls {

/// The character code of Enter.
inline constexpr int enter = 13;

/// The character of a key: R and P by their place, as the keyboards of most countries have them, where the
/// key types a letter that is not Latin; else what it types. Null where it types none, or is a command.
QChar typedCharacter(const QKeyEvent &event);

/// A one-line text box that shows each typed character to its owner before it takes it. Of a pasted or
/// dropped text with line breaks it enters the first line that is not empty, and leaves out the others.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget *parent = nullptr);
    /// Empties the box for good. QLineEdit's own clear can be undone with Ctrl+Z.
    void clear() { setText({}); }
    /// Gives the box a thin outline; while it is empty it shows what lies behind it.
    void setSeeThrough();
    /// Answers ImEnabled with no where WA_InputMethodEnabled is off; QLineEdit does not look at that.
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    /// A character was typed; `code` is its character code, `enter` for Enter. A handler that sets it to 0
    /// swallows the key. Keys held with Ctrl, Alt or Meta are no characters. Where the keyboard's letters are
    /// not Latin, the keys that are R and P by their place are shown as 'R' and 'P'.
    void keyPress(int &code);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool swallowed(QChar character);
    void enterFirstLine(const QString &edited);
    void enterIfDue();

    bool m_seeThrough = false;
    bool m_isEnterDue = false; ///< behind a line that was pasted or dropped
};

} // namespace controls
