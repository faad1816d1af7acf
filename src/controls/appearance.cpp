#include "appearance.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPainter>
#include <QPixmapCache>
#include <QProxyStyle>
#include <QStyleOption>

#include <algorithm>

namespace controls {

/// How large a widget is drawn, by its letters.
static double scaleOf(const QWidget *widget)
{
    return widget->font().pointSizeF() / 8.0;
}

namespace {

/// Fusion, the same on every desktop: no icons on the buttons of message boxes, access keys underlined.
class HouseStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        if (!qobject_cast<const QCheckBox *>(widget))
            return QProxyStyle::pixelMetric(metric, option, widget);
        // A check box of the design is no higher than a line of text.
        if (metric == PM_IndicatorWidth || metric == PM_IndicatorHeight)
            return qRound(13 * scaleOf(widget));
        return qRound(QProxyStyle::pixelMetric(metric, option, widget) * scaleOf(widget));
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (element == PE_Frame && qobject_cast<const QAbstractScrollArea *>(widget))
            fillFrame(*painter, QRegion(option->rect) - option->rect.adjusted(1, 1, -1, -1), 1,
                      colors::frame);
        else
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *title = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element != CE_MenuBarItem || !title || !widget || !widget->hasFocus())
            return QProxyStyle::drawControl(element, option, painter, widget);
        // Fusion shows only a title whose menu is open, not the one that the keyboard is on.
        QStyleOptionMenuItem shown = *title;
        if (shown.state.testFlag(State_Selected))
            shown.state |= State_Sunken;
        QProxyStyle::drawControl(element, &shown, painter, widget);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override
    {
        QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
        if (control != CC_ComboBox)
            return rect;
        // The combo boxes of the design are narrow: a slimmer arrow leaves space for four characters.
        const QRect arrow = QProxyStyle::subControlRect(control, option, SC_ComboBoxArrow, widget);
        const int slim = arrow.width() - arrow.width() / 3;
        const int saved = arrow.width() - qRound(slim * scaleOf(widget));
        if (part == SC_ComboBoxArrow)
            rect.setLeft(rect.left() + saved);
        else if (part == SC_ComboBoxEditField)
            rect.setRight(rect.right() + saved);
        return rect;
    }

    // The sign for menus that do not fit into the bar is never seen, and would load every image plugin.
    QIcon standardIcon(StandardPixmap icon, const QStyleOption *option, const QWidget *widget) const override
    {
        const bool isNeverSeen = icon == SP_ToolBarHorizontalExtensionButton;
        return isNeverSeen ? QIcon() : QProxyStyle::standardIcon(icon, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
            return 0;
        if (hint == SH_DialogButtonLayout)
            return QDialogButtonBox::WinLayout; // Yes before No
        if (hint == SH_UnderlineShortcut)
            return 1;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

static QPalette lightPalette()
{
    // clang-format off
    const std::pair<QPalette::ColorRole, QColor> roles[] = {
        {QPalette::WindowText, Qt::black},        {QPalette::Button, colors::buttonFace},
        {QPalette::Light, Qt::white},             {QPalette::Midlight, 0xFFE3E3E3},
        {QPalette::Dark, colors::buttonShadow},   {QPalette::Mid, 0xFFB8B8B8},
        {QPalette::Text, Qt::black},              {QPalette::BrightText, Qt::white},
        {QPalette::ButtonText, Qt::black},        {QPalette::Base, Qt::white},
        {QPalette::Window, colors::buttonFace},   {QPalette::Shadow, 0xFF696969},
        {QPalette::Highlight, colors::highlight}, {QPalette::HighlightedText, Qt::white},
        {QPalette::Link, colors::highlight},      {QPalette::LinkVisited, 0xFF6A1B9A},
        {QPalette::AlternateBase, 0xFFF7F7F7},    {QPalette::ToolTipBase, 0xFFFFFFDC},
        {QPalette::ToolTipText, Qt::black},       {QPalette::PlaceholderText, colors::disabledText},
    };
    // clang-format on
    QPalette palette;
    for (const auto &[role, color] : roles)
        palette.setColor(QPalette::All, role, color);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colors::disabledText);
    return palette;
}

/// The first installed family, or else the first. Qt, given several, would rank every font of the system.
static QString firstInstalled(const QStringList &families)
{
    const QStringList installed = QFontDatabase::families();
    for (const QString &family : families) {
        if (installed.contains(family))
            return family;
    }
    return families.front();
}

static QFont fontOf(const QString &family, QFont::StyleHint hint, double points, bool bold)
{
    QFont font(family);
    font.setStyleHint(hint);
    font.setPointSizeF(points);
    font.setBold(bold);
    // Windows hints letters only while no screen has a scale. With another preference Qt draws them anew when
    // that changes, and does not go on with those that it has drawn before.
    if (qGuiApp->devicePixelRatio() != 1.0)
        font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void applyAppearance(QApplication &application)
{
    application.setStyle(new HouseStyle(QStringLiteral("Fusion")));
    // The style keeps pictures of controls and finds none of them again for the next message box.
    QPixmapCache::setCacheLimit(2048); // kilobytes
    const QPalette palette = lightPalette();
    application.setPalette(palette);
    // A desktop's theme may have colours of its own for these.
    for (const char *kind : {"QMenu", "QMenuBar", "QMessageBox", "QToolTip", "QAbstractItemView", "QComboBox",
                             "QLineEdit", "QTextEdit", "QAbstractButton", "QLabel", "QCheckBox"})
        application.setPalette(palette, kind);
    application.setFont(sansFont());
}

QFont sansFont(double points, bool bold)
{
    static const QString family =
        // "MS Sans Serif" is a bitmap, which cannot be scaled.
        firstInstalled({QStringLiteral("Microsoft Sans Serif"), QStringLiteral("Arial"),
                        QStringLiteral("Liberation Sans"), QStringLiteral("Arimo"),
                        QStringLiteral("MS Sans Serif")});
    return fontOf(family, QFont::SansSerif, points, bold);
}

QFont displayFont(double points)
{
    static const QString family = firstInstalled(
        {QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"), QStringLiteral("Cousine")});
    return fontOf(family, QFont::Monospace, points, true);
}

void fillFrame(QPainter &painter, const QRegion &region, int width, const QColor &topLeft, QColor bottomRight)
{
    if (!bottomRight.isValid())
        bottomRight = topLeft;
    const QTransform toDevice = painter.deviceTransform();
    const QRect outer = toDevice.map(region).boundingRect(); // rounded as Qt rounds what it clips by
    const int side = std::max(1, static_cast<int>(width * toDevice.m11()));
    const auto fill = [&](int x, int y, int across, int down, const QColor &color) {
        painter.fillRect(toDevice.inverted().mapRect(QRectF(x, y, across, down)), color);
    };
    fill(outer.left(), outer.bottom() + 1 - side, outer.width(), side, bottomRight);
    fill(outer.right() + 1 - side, outer.top(), side, outer.height(), bottomRight);
    fill(outer.left(), outer.top(), outer.width() - side, side, topLeft);
    fill(outer.left(), outer.top(), side, outer.height() - side, topLeft);
}

} // namespace controls
