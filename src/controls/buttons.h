#pragma once

#include <QColor>
#include <QPushButton>

namespace controls {

/// A push button with a back colour of its own, which shows exactly.
class ColorButton : public QPushButton
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
