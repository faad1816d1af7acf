// The contrast of the program's texts against what lies behind them, and the table of it in docs/contrast.md.

#include "appearance.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QTest>

#include <cmath>

namespace {

/// WCAG 2's relative luminance of a colour.
double luminance(const QColor &color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

} // namespace

class TestContrast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { controls::applyAppearance(*qApp); }

    /// With VELLOMIR_UPDATE_DOCS set, it writes the table.
    void everyTextCanBeRead()
    {
        namespace colors = controls::colors;
        const auto of = [](QPalette::ColorRole role, QPalette::ColorGroup group = QPalette::Active) {
            return QApplication::palette().color(group, role);
        };
        const std::tuple<const char *, QColor, QColor, double> texts[] = {
            {"Labels and check boxes", of(QPalette::WindowText), of(QPalette::Window), 4.5},
            {"Buttons", of(QPalette::ButtonText), of(QPalette::Button), 4.5},
            {"Numbers on buttons, not called", of(QPalette::ButtonText), colors::buttonFace, 4.5},
            {"Numbers on buttons, called", of(QPalette::ButtonText), colors::buttonShadow, 4.5},
            {"Disabled buttons", of(QPalette::ButtonText, QPalette::Disabled), of(QPalette::Button), 4.5},
            {"Typed text, lists, help", of(QPalette::Text), of(QPalette::Base), 4.5},
            {"Selected text and menu items", of(QPalette::HighlightedText), of(QPalette::Highlight), 4.5},
            {"Tool tips", of(QPalette::ToolTipText), of(QPalette::ToolTipBase), 4.5},
            {"Large board, not called", colors::black, colors::buttonFace, 3.0},
            {"Large board, called; current number", colors::red, colors::buttonFace, 3.0},
            {"Letters of the columns", colors::blue, colors::buttonFace, 3.0},
        };
        QString table =
            "# Contrast of the texts\n\n"
            "The ratio after WCAG 2: at least 4.5 for normal text, 3 for large text. The colours are "
            "the program's own on\nevery desktop. Written by `tst_contrast`.\n\n"
            "| Text | Colour | Behind it | Ratio | At least |\n|---|---|---|---:|---:|\n";
        QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
        for (const auto &[what, text, ground, least] : texts) {
            const double ratio = contrast(text, ground);
            QVERIFY2(ratio >= least, what);
            table += QString("| %1 | %2 | %3 | %4 | %5 |\n")
                         .arg(what, text.name(), ground.name())
                         .arg(ratio, 0, 'f', 1)
                         .arg(least, 0, 'f', 1);
        }
        QFile file(SOURCE_FOLDER "/docs/contrast.md");
        if (qEnvironmentVariableIsSet("VELLOMIR_UPDATE_DOCS"))
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(table.toUtf8()) > 0);
        file.close();
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()), table);
    }
};

QTEST_MAIN(TestContrast)
#include "tst_contrast.moc"
