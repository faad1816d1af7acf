#pragma once

#include <QLineEdit>

namespace controls {

/// A one-line text box that shows each typed character to its owner before it takes it.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget *parent = nullptr);
    /// Empties the box for good. QLineEdit's own clear can be undone with Ctrl+Z.
    void clear() { setText({}); }
    /// Deletes what stands before and behind `part`, which is a part of the text. Screen readers say a text
    /// that is put in anew, but nothing of one that is deleted.
    void deleteBut(const QString &part);
    /// While it is empty, such a box shows what lies behind it, in a thin outline.
    void setSeeThrough(bool seeThrough);

Q_SIGNALS:
    /// A character was typed; `code` is its character code, 13 for Enter. A handler that sets it to 0
    /// swallows the key. Keys held with Ctrl, Alt or Meta are no characters; with Alt or Meta they type
    /// nothing either.
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
