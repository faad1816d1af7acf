#pragma once

#include <QLineEdit>

namespace controls {

/// The character code of Enter.
inline constexpr int enter = 13;

/// A one-line text box that shows each typed character to its owner before it takes it.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;
    /// Empties the box for good. QLineEdit's own clear can be undone with Ctrl+Z.
    void clear() { setText({}); }
    /// A see-through box has a thin outline, and shows what lies behind it while it is empty.
    void setSeeThrough(bool seeThrough);

Q_SIGNALS:
    /// A character was typed; `code` is its character code, `enter` for Enter. A handler that sets it to 0
    /// swallows the key. Keys held with Ctrl, Alt or Meta are no characters.
    void keyPress(int &code);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool swallowed(QChar character);

    bool m_seeThrough = false;
};

} // namespace controls
