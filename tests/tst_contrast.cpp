// The contrast of the program's texts against what lies behind them, and the table of it in docs/contrast.md.

#include "platform/appearance.h"
#include "platform/colors.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace colors = platform::colors;

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

enum Size { Normal, Large };

struct Text
{
    const char *what;
    QColor text;
    QColor ground;
    Size size;

    double least() const { return size == Large ? 3.0 : 4.5; }
};

QList<Text> texts()
{
    const QPalette palette = QApplication::palette();
    const auto on = [](QRgb color) { return QColor::fromRgb(color); };
    const auto disabled = [&](QPalette::ColorRole role) { return palette.color(QPalette::Disabled, role); };
    return {
        {"Labels and check boxes", palette.windowText().color(), palette.window().color(), Normal},
        {"Buttons", palette.buttonText().color(), palette.button().color(), Normal},
        {"Numbers on buttons, not called", palette.buttonText().color(), on(colors::buttonFace), Normal},
        {"Numbers on buttons, called", palette.buttonText().color(), on(colors::buttonShadow), Normal},
        {"Disabled buttons", disabled(QPalette::ButtonText), palette.button().color(), Normal},
        {"Typed text, lists, help", palette.text().color(), palette.base().color(), Normal},
        {"Selected text and menu items", palette.highlightedText().color(), palette.highlight().color(),
         Normal},
        {"Tool tips", palette.toolTipText().color(), palette.toolTipBase().color(), Normal},
        {"Large board, not called", on(colors::black), on(colors::buttonFace), Large},
        {"Large board, called; current number", on(colors::red), on(colors::buttonFace), Large},
        {"Letters of the columns", on(colors::blue), on(colors::buttonFace), Large},
    };
}

QString table()
{
    QString text =
        QStringLiteral("# Contrast of the texts\n\n"
                       "The ratio after WCAG 2: at least 4.5 for normal text, 3 for large text. The colours "
                       "are the program's own on\nevery desktop. Written by `tst_contrast`.\n\n"
                       "| Text | Colour | Behind it | Ratio | At least |\n|---|---|---|---:|---:|\n");
    for (const Text &row : texts())
        text += QStringLiteral("| %1 | %2 | %3 | %4 | %5 |\n")
                    .arg(QString::fromLatin1(row.what), row.text.name(), row.ground.name())
                    .arg(contrast(row.text, row.ground), 0, 'f', 1)
                    .arg(row.least(), 0, 'f', 1);
    return text;
}

} // namespace

class TestContrast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { platform::applyAppearance(*qApp); }
    void everyTextCanBeRead();
    void tableIsUpToDate();
};

void TestContrast::everyTextCanBeRead()
{
    QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
    for (const Text &row : texts())
        QVERIFY2(contrast(row.text, row.ground) >= row.least(), row.what);
}

/// With VELLOMIR_UPDATE_DOCS set, it writes the table instead.
void TestContrast::tableIsUpToDate()
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/docs/contrast.md"));
    if (qEnvironmentVariableIsSet("VELLOMIR_UPDATE_DOCS")) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(table().toUtf8());
        return;
    }
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), table());
}

QTEST_MAIN(TestContrast)
#include "tst_contrast.moc"
