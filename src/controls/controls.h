#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

/// Small controls that do what the program's windows ask of a control and Qt's own do not.
namespace controls {

/// A label that is as large as its caption.
class Label : public QLabel
{
    Q_OBJECT

public:
    explicit Label(QWidget *parent = nullptr);
    void setCaption(const QString &caption);
    QString caption() const { return text(); }
};

/// A push button that Enter presses as Space does. A key that is held presses it once.
class PushButton : public QPushButton
{
    Q_OBJECT

public:
    explicit PushButton(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

/// A push button with a back colour of its own, which shows exactly.
class ColorButton : public PushButton
{
    Q_OBJECT

public:
    explicit ColorButton(QWidget *parent = nullptr);
    void setBackColor(QRgb color);
    QRgb backColor() const { return m_backColor; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRgb m_backColor;
};

/// A small box that shows nothing but a colour and can be clicked.
class ColorBox : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ColorBox(QWidget *parent = nullptr);
    void setBackColor(QRgb color);
    QRgb backColor() const { return m_backColor; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRgb m_backColor;
};

/// A one-line text box that shows each typed character to its owner before it takes it.
class TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget *parent = nullptr);
    /// While it is empty, such a box shows what lies behind it, in a thin outline.
    void setSeeThrough(bool seeThrough);

Q_SIGNALS:
    /// A character was typed; `code` is its character code, 13 for Enter. A handler that sets it to 0
    /// swallows the key. Keys held with Ctrl, Alt or Meta are no characters.
    void keyPress(int &code);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool swallowed(QChar character);

    bool m_seeThrough = false;
    int m_swallowedKey = 0; // the last key pressed, when it was swallowed
};

/// A combo box that the mouse wheel changes only while it has the focus.
class ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBox(QWidget *parent = nullptr);
    /// Makes the box editable; its text box answers for typed characters.
    TextBox *makeEditable();

protected:
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace controls
