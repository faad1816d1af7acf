#include "design_table.h"

#include "appearance.h"
#include "buttons.h"
#include "combo_box.h"
#include "rich_text_box.h"
#include "text_box.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QSlider>

namespace controls {

template <class Control>
static Control *withText(Control *control, const QString &text)
{
    control->setText(text);
    return control;
}

static QWidget *makeControl(const DesignRow &row, QWidget *parent)
{
    const QString caption = QString::fromUtf8(row.caption);
    switch (row.kind) {
    case Kind::Label:
    case Kind::CentredLabel: {
        auto *label = new QLabel(caption, parent);
        label->setTextFormat(Qt::PlainText);
        if (row.points > 0.0)
            label->setFont(sansFont(row.points, true));
        if (row.kind == Kind::CentredLabel) {
            label->setAlignment(Qt::AlignHCenter);
            label->setMinimumWidth(placed(row).width());
        }
        return label;
    }
    case Kind::PushButton: {
        auto *button = new QPushButton(caption, parent);
        button->setAutoDefault(true); // Enter presses it as Space does
        button->setFocusPolicy(Qt::TabFocus);
        return button;
    }
    case Kind::ColorButton:
        return withText(new ColorButton(parent), caption);
    case Kind::CheckBox: {
        auto *box = new QCheckBox(caption, parent);
        box->setFocusPolicy(Qt::TabFocus);
        return box;
    }
    case Kind::TextBox:
        return withText(new TextBox(parent), caption);
    case Kind::EditableCombo:
    case Kind::DropDownList:
        return new ComboBox(parent, row.kind == Kind::EditableCombo);
    case Kind::ListBox:
        return new QListWidget(parent);
    case Kind::Slider:
        return new QSlider(Qt::Horizontal, parent);
    case Kind::Display:
        return withText(new RichTextBox(parent), caption);
    case Kind::Frame:
        return new QWidget(parent);
    case Kind::ColorBox:
        return new ColorButton(parent, true);
    case Kind::Line: {
        auto *line = new QWidget(parent); // filled: a frame's line may vanish between two device pixels
        line->setAutoFillBackground(true);
        line->setPalette(QPalette(Qt::black));
        return line;
    }
    }
    Q_UNREACHABLE();
}

QRect placed(const DesignRow &row, double scale)
{
    // What lies in a frame may end a pixel farther.
    const int rounding = row.kind == Kind::Frame && scale < 1.0 ? 1 : 0;
    return {pixels(row.left, scale), pixels(row.top, scale), pixels(row.width, scale) + rounding,
            pixels(row.height, scale) + rounding};
}

void place(QWidget *control, const DesignRow &row, double scale)
{
    control->setGeometry(placed(row, scale));
    if (row.kind == Kind::Label || row.kind == Kind::CentredLabel)
        control->adjustSize();
}

void setCaption(QLabel *label, const QString &caption)
{
    label->setText(caption);
    label->adjustSize();
    label->repaint();
}

QWidget *buildControl(const DesignRow &row, QWidget *client)
{
    QWidget *widget = makeControl(row, row.container ? control<QWidget>(client, row.container) : client);
    widget->setObjectName(QString::fromLatin1(row.name));
    place(widget, row, 1.0);
    return widget;
}

void buildDesign(std::span<const DesignRow> design, QWidget *client)
{
    for (const DesignRow &row : design)
        buildControl(row, client);
}

} // namespace controls
