#include "design_table.h"

#include "appearance.h"
#include "buttons.h"
#include "combo_box.h"
#include "label.h"
#include "rich_text_box.h"
#include "text_box.h"

#include <QCheckBox>
#include <QListWidget>
#include <QSlider>

namespace controls {

namespace {

QWidget *makeControl(const DesignRow &row, QWidget *parent)
{
    const QString caption = QString::fromUtf8(row.caption);
    switch (row.kind) {
    case Kind::Label: {
        auto *label = new Label(parent);
        label->setCaption(caption);
        return label;
    }
    case Kind::CentredLabel: {
        auto *label = new Label(parent);
        label->setAlignment(Qt::AlignHCenter);
        label->setMinimumWidth(placed(row, parent).width());
        label->setCaption(caption);
        return label;
    }
    case Kind::PushButton: {
        auto *button = new QPushButton(caption, parent);
        button->setAutoDefault(true); // Enter presses it as Space does
        return button;
    }
    case Kind::ColorButton: {
        auto *button = new ColorButton(parent);
        button->setText(caption);
        return button;
    }
    case Kind::CheckBox:
        return new QCheckBox(caption, parent);
    case Kind::TextBox: {
        auto *box = new TextBox(parent);
        box->setText(caption);
        return box;
    }
    case Kind::EditableCombo: {
        auto *combo = new ComboBox(parent);
        combo->makeEditable()->setText(caption);
        return combo;
    }
    case Kind::DropDownList:
        return new ComboBox(parent);
    case Kind::ListBox:
        return new QListWidget(parent);
    case Kind::Slider:
        return new QSlider(Qt::Horizontal, parent);
    case Kind::Display: {
        auto *display = new RichTextBox(parent);
        display->setText(caption);
        return display;
    }
    case Kind::Frame:
        return new QWidget(parent);
    case Kind::ColorBox:
        return new ColorBox(parent);
    case Kind::Line: {
        auto *line = new QWidget(parent); // filled: a frame's line may vanish between two device pixels
        line->setAutoFillBackground(true);
        line->setPalette(QPalette(QColor::fromRgb(colors::black)));
        return line;
    }
    }
    Q_UNREACHABLE();
}

} // namespace

QRect placed(const DesignRow &row, const QWidget *widget)
{
    const double dpi = widget->logicalDpiX();
    return {pixels(row.left, dpi), pixels(row.top, dpi), pixels(row.width, dpi), pixels(row.height, dpi)};
}

QWidget *buildControl(const DesignRow &row, QWidget *client)
{
    QWidget *widget = makeControl(row, row.container ? control<QWidget>(client, row.container) : client);
    widget->setObjectName(QString::fromLatin1(row.name));
    const QRect place = placed(row, client);
    if (row.kind == Kind::Label || row.kind == Kind::CentredLabel)
        widget->move(place.topLeft());
    else
        widget->setGeometry(place);
    return widget;
}

void buildDesign(std::span<const DesignRow> design, QWidget *client)
{
    for (const DesignRow &row : design)
        buildControl(row, client);
}

} // namespace controls
