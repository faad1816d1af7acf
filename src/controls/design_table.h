#pragma once

#include <QWidget>

#include <cmath>
#include <span>

class QLabel;

/// A window's design as data: one row a control, from which the controls are made.
namespace controls {

/// On every screen: Qt makes its pixels as large as the screen's scale wants them.
inline constexpr int twipsPerPixel = 15;

/// `twips` in pixels, rounded to a whole number, where the design is drawn `scale` times as large.
inline int pixels(double twips, double scale = 1.0)
{
    return static_cast<int>(std::lround(twips * scale / twipsPerPixel));
}

/// The least whole number of pixels that holds `twips`.
inline int pixelsUp(double twips, double scale)
{
    return static_cast<int>(std::ceil(twips * scale / twipsPerPixel));
}

enum class Kind {
    Label,
    CentredLabel, // at least as wide as its design
    PushButton,
    ColorButton,
    CheckBox,
    TextBox,
    EditableCombo,
    DropDownList,
    ListBox,
    Slider,
    Display,
    Frame,
    ColorBox,
    Line, // a rule, from its top left across its width
};

/// One control. Places and sizes are twips, measured from the top left of the client area, or of `container`
/// for a control that lies in one. `tab` is the place in the tab order, -1 for none. A label with `points`
/// has bold letters of that size.
struct DesignRow
{
    Kind kind;
    const char *name;
    const char *caption;
    int left;
    int top;
    int width;
    int height;
    int tab;
    const char *container = nullptr;
    double points = 0.0;
};

/// The design's place and size in pixels.
QRect placed(const DesignRow &row, double scale = 1.0);

/// Gives a control that was made from `row` its place and size.
void place(QWidget *control, const DesignRow &row, double scale);

/// Gives a label a caption and the size of that, and shows it at once.
void setCaption(QLabel *label, const QString &caption);

/// Makes one control in `client`, or in the container that the row names, with its name as its objectName.
QWidget *buildControl(const DesignRow &row, QWidget *client);

/// Makes the controls of a design in `client` in the order of the rows.
void buildDesign(std::span<const DesignRow> design, QWidget *client);

/// The control of that name below `window`; it must be there and of that kind.
template <class Control>
Control *control(const QWidget *window, const char *name)
{
    auto *found = window->findChild<Control *>(QString::fromLatin1(name));
    Q_ASSERT_X(found, "control", name);
    return found;
}

} // namespace controls
