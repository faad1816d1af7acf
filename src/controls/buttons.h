#pragma once

#include <QColor>
#include <QPushButton>

namespace controls {

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

} // namespace controls
