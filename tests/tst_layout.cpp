// How the windows look, at every scale of the screen.

#include "support/room.h"

#include <QPalette>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

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

/// The pixels of a colour in a place of a picture.
QRect ink(const QImage &picture, const QRect &place, const QColor &color)
{
    QRect found;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            if (picture.valid(x, y) && picture.pixel(x, y) == color.rgb())
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

/// How thick the frame of a control is in pixels of the screen: "left top right bottom".
QString frameOf(const QImage &picture, const QWidget *control)
{
    const double scale = picture.devicePixelRatio();
    const QPointF origin(control->mapTo(control->window(), QPoint(0, 0)));
    const QRectF exact(origin * scale, QSizeF(control->size()) * scale);
    const QRect place = exact.toAlignedRect();
    const int depth = qRound(3 * scale);
    const QRgb inside = picture.pixel(place.left() + 2 * depth, place.top() + 2 * depth);
    QStringList sides;
    for (const QPoint step : {QPoint(1, 0), QPoint(0, 1), QPoint(-1, 0), QPoint(0, -1)}) {
        QPoint at(step.x() > 0   ? place.left()
                  : step.x() < 0 ? place.right()
                                 : place.left() + 2 * depth,
                  step.y() > 0   ? place.top()
                  : step.y() < 0 ? place.bottom()
                                 : place.top() + 2 * depth);
        int thick = 0;
        for (int i = 0; i < depth; ++i, at += step)
            thick += picture.pixel(at) != inside && picture.pixel(at) != 0xFFF0F0F0;
        sides += QString::number(thick);
    }
    return sides.join(' ');
}

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void places()
    {
        Room room;
        const double dpi = room.window->logicalDpiX();
        const auto pixels = [dpi](int twips) { return qRound(twips * dpi / 1440); };
        const std::tuple<const char *, int, int, int, int> rows[] = {
            {"cButt(15)", 6090, 420, 360, 360},     {"cButt(16)", 420, 825, 360, 360},
            {"cDemoButt(9)", 1080, 340, 1095, 255}, {"cDemoButt(21)", 2280, 2040, 495, 255},
            {"cPause", 15540, 2520, 1800, 330},     {"RTB2", 720, 2865, 18315, 7095},
            {"RTB1", 120, 2865, 615, 7095}};
        for (const auto &[name, left, top, width, height] : rows)
            QCOMPARE(room.find(name)->geometry(),
                     QRect(pixels(left), pixels(top), pixels(width), pixels(height)));
        // Nothing lies over its neighbour (two pixels are the design's own), and no caption is cut off.
        const QWidgetList all =
            room.window->centralWidget()->findChildren<QWidget *>(QRegularExpression("^[^q]"));
        for (const QWidget *one : all) {
            for (const QWidget *other : all) {
                const QRect both = one->geometry() & other->geometry();
                QVERIFY2(one == other || one->parent() != other->parent() || both.width() <= pixels(30) ||
                             one == room.entry() || other == room.entry(),
                         qPrintable(one->objectName() + " over " + other->objectName()));
            }
        }
        for (auto *button : room.window->findChildren<QAbstractButton *>()) {
            const int text = button->fontMetrics().horizontalAdvance(button->text().remove('&'));
            QVERIFY2(text + (button->isCheckable() ? 17 : 4) <= button->width(),
                     qPrintable(button->objectName()));
        }
        const QPoint off = room.window->frameGeometry().center() - room.window->screen()->geometry().center();
        QVERIFY(off.manhattanLength() <= 2 || room.window->screen()->geometry().width() < 1500);
    }

    /// Every side of every frame is there, as thick as the others, at every scale.
    void frames()
    {
        Room room;
        room.play("33 mnuAbout");
        room.look();
        room.entry()->hide();
        const QImage picture = room.window->grab().toImage();
        for (const char *kind : {"^cButt", "^tDemo", "^RTB[34]"}) {
            QSet<QString> frames;
            for (const QWidget *control :
                 room.window->centralWidget()->findChildren<QWidget *>(QRegularExpression(kind)))
                frames += frameOf(picture, control);
            const QStringList sides = frames.values().value(0).split(' ');
            QVERIFY2(frames.size() == 1 && sides[0] != "0" && sides.count(sides[0]) == 4,
                     qPrintable(kind + QStringList(frames.values()).join(", ")));
        }
        QWidget *rule = room.find("frmAbout")->findChild<QWidget *>("Line1");
        const QImage line = rule->grab().toImage();
        int dark = 0;
        for (int y = 0; y < line.height(); ++y)
            dark += line.pixelColor(line.width() / 2, y).lightness() < 128;
        QVERIFY(dark >= 1);
    }

    /// The displays: their colours, the heights of their letters in points, and where they stand.
    void displays()
    {
        Room room;
        room.play("75 48 46 47 2");
        room.look();
        const QImage picture = room.window->grab().toImage();
        const double scale = picture.devicePixelRatio();
        const std::tuple<const char *, QColor, double> rows[] = {
            {"RTB1", Qt::blue, 33},     {"RTB2", Qt::black, 33}, {"RTB3", Qt::red, 95.25},
            {"RTB4", Qt::black, 39.75}, {"RTB5", Qt::blue, 17},
        };
        for (const auto &[name, color, points] : rows) {
            const QTextEdit *display = room.display(name);
            QFont font = display->font();
            font.setPointSizeF(points);
            const QRect line = display->cursorRect(QTextCursor(display->document()->begin()));
            const QRect first(0, line.top(), display->viewport()->width(), line.height());
            const QPoint origin = display->viewport()->mapTo(room.window.data(), QPoint(0, 0));
            const QRect place(first.topLeft() * scale + origin * scale, first.size() * scale);
            const QRectF letters = QFontMetricsF(font, display).tightBoundingRect("B2");
            QVERIFY2(qAbs(ink(picture, place, color).height() / scale - letters.height()) < 3, name);
            const int middle = ink(picture, place, color).center().x() - place.center().x();
            QVERIFY2(qAbs(middle) <= 3 * scale || !QString("RTB1 RTB3 RTB5").contains(name), name);
            QCOMPARE(display->horizontalScrollBar()->maximum(), 0);
        }
        const QTextEdit *letters = room.display("RTB5");
        for (int row = 0; row < 5; ++row) {
            const QRect letter =
                letters->cursorRect(QTextCursor(letters->document()->findBlockByNumber(row)));
            const QWidget *button = room.find(QString("cButt(%1)").arg(15 * row + 1));
            QVERIFY(qAbs(letter.center().y() + letters->y() - button->geometry().center().y()) <= 3);
        }
    }

    /// The entry box lies over cell 10, and hides it only while something stands in it.
    void cardBehindTheEntry()
    {
        Room room;
        const auto pixel = [&room] {
            const QPoint inside = room.entry()->geometry().center() + QPoint(8, 4);
            return QColor(
                       room.window->centralWidget()->grab(QRect(inside, QSize(1, 1))).toImage().pixel(0, 0))
                .name();
        };
        room.play("c10");
        QCOMPARE(pixel(), "#000000");
        room.play("'7");
        QCOMPARE(pixel(), "#ffffff");
    }

    /// At every size the letters stand level with their rows, whole, and the called numbers stay red.
    void fontSizes()
    {
        Room room("[Options]\nFontSz=900\nAutoCallTm=17\n");
        room.play("40");
        auto *font = room.find<QComboBox>("iFontSize");
        QTextEdit *letters = room.display("RTB1"), *board = room.display("RTB2");
        QCOMPARE(font->currentText() + room.find<QComboBox>("cboSec")->currentText(), "90010");
        QCOMPARE(board->font().pointSizeF(), 100);
        room.window->resize(10, 10); // the least size is too small for the larger letters: both scroll
        const auto tops = [](const QTextEdit *display) {
            QList<int> found;
            for (QTextBlock line = display->document()->begin(); line.isValid(); line = line.next())
                found += display->cursorRect(QTextCursor(line)).bottom();
            return found;
        };
        const std::tuple<const char *, const char *, double> rows[] = {
            {"huge\r", "huge", 100}, {"3\r", "5", 5},    {"250\r", "100", 100}, {"12.5\r", "12.5", 12.5},
            {"\r", "", 12.5},        {"52\r", "52", 52}, {"40\t", "40", 52},    {"20\r", "20", 20}};
        for (const auto &[typed, shown, drawn] : rows) {
            font->setFocus();
            font->lineEdit()->selectAll();
            QTest::keyClick(font->lineEdit(), Qt::Key_Delete);
            room.type(typed);
            QCOMPARE(font->currentText(), shown);
            QCOMPARE(board->font().pointSizeF(), drawn);
            QCOMPARE(letters->horizontalScrollBar()->maximum(), 0);
            QVERIFY(drawn < 50 || board->horizontalScrollBar()->isVisible());
            for (const int place : {0, board->verticalScrollBar()->maximum()}) {
                board->verticalScrollBar()->setValue(place);
                QCOMPARE(tops(letters), tops(board));
            }
        }
        QWheelEvent wheel({5, 5}, font->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
        QApplication::sendEvent(font, &wheel); // changes only what has the focus
        QCOMPARE(font->currentText(), "20");
    }

    void resizing()
    {
        Room room;
        const double scale = room.window->logicalDpiX() / 96.0;
        room.window->resize(10, 10);
        QVERIFY((room.window->centralWidget()->size() - QSize(926, 548) * scale).isEmpty());
        QTextEdit *board = room.display("RTB2");
        board->verticalScrollBar()->setValue(50);
        room.window->resize(room.window->size() + QSize(4, 3));
        QCOMPARE(board->verticalScrollBar()->value(), 0);
        for (const QSize more : {QSize(0, 0), QSize(300, 200)}) {
            room.window->resize(room.window->size() + more);
            const QRect client = room.window->centralWidget()->rect();
            QCOMPARE(client.right() - board->geometry().right(), qRound(13 * scale));
            QCOMPARE(client.bottom() - board->geometry().bottom(), qRound(10 * scale));
            QCOMPARE(room.display("RTB1")->geometry().bottom(), board->geometry().bottom());
        }
    }

    void contrasts()
    {
        const auto of = [](QPalette::ColorRole role, QPalette::ColorGroup group = QPalette::Active) {
            return QApplication::palette().color(group, role);
        };
        const QColor face("#F0F0F0"), shadow("#A0A0A0");
        const std::tuple<QColor, QColor, double> texts[] = {
            {of(QPalette::WindowText), of(QPalette::Window), 4.5},
            {of(QPalette::ButtonText), face, 4.5},
            {of(QPalette::ButtonText), shadow, 4.5},
            {of(QPalette::ButtonText, QPalette::Disabled), of(QPalette::Button), 4.5},
            {of(QPalette::Text), of(QPalette::Base), 4.5},
            {of(QPalette::HighlightedText), of(QPalette::Highlight), 4.5},
            {of(QPalette::ToolTipText), of(QPalette::ToolTipBase), 4.5},
            {Qt::red, face, 3},
            {Qt::blue, face, 3},
        };
        for (const auto &[text, ground, least] : texts)
            QVERIFY2(contrast(text, ground) >= least, qPrintable(text.name() + " on " + ground.name()));
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestLayout>(argc, argv);
}

#include "tst_layout.moc"
