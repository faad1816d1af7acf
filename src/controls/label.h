#pragma once

#include <QLabel>

namespace controls {

/// A label that is as large as its caption.
class Label : public QLabel
{
    Q_OBJECT

public:
    explicit Label(QWidget *parent = nullptr)
        : QLabel(parent)
    {
        setTextFormat(Qt::PlainText);
    }

    void setCaption(const QString &caption)
    {
        setText(caption);
        adjustSize();
    }
};

} // namespace controls
