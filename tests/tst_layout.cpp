// How the main window looks, at every scale of the screen.

#include "support/room.h"

#include <cmath>

namespace {

/// WCAG 2's contrast of two colours.
double contrast(const QColor &a, const QColor &b)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](double c) {
            return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF()) + 0.05;
    };
    return qMax(luminance(a), luminance(b)) / qMin(luminance(a), luminance(b));
}

/// The pixels of a colour in a place of a picture.
QRect ink(const QImage &picture, const QRect &place, const QColor &color)
{
    QRect found;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x)
            found |= picture.valid(x, y) && picture.pixel(x, y) == color.rgb() ? QRect(x, y, 1, 1) : QRect();
    }
    return found;
}

/// How thick the frame of a control is in pixels of the screen: "left top right bottom".
QString frameOf(const QImage &picture, const QWidget *control)
{
    const double scale = picture.devicePixelRatio();
    const QPointF origin(control->mapTo(control->window(), QPoint(0, 0)));
    const QRect place = QRectF(origin * scale, QSizeF(control->size()) * scale).toAlignedRect();
    const int depth = qRound(3 * scale);
    const QPoint inside = place.topLeft() + QPoint(2 * depth, 2 * depth);
    const std::pair<QPoint, QPoint> sides[] = {{{place.left(), inside.y()}, {1, 0}},
                                               {{inside.x(), place.top()}, {0, 1}},
                                               {{place.right(), inside.y()}, {-1, 0}},
                                               {{inside.x(), place.bottom()}, {0, -1}}};
    QString frame;
    for (auto [at, step] : sides) {
        int thick = 0;
        for (int i = 0; i < depth; ++i, at += step)
            thick += picture.pixel(at) != picture.pixel(inside) && picture.pixel(at) != 0xFFF0F0F0;
        frame += QString::number(thick);
    }
    return frame;
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
            {"cPause", 15540, 2520, 1800, 330},     {"RTB2", 720, 2865, 18315, 7095}};
        for (const auto &[name, left, top, width, height] : rows)
            QCOMPARE(room.find(name)->geometry(),
                     QRect(pixels(left), pixels(top), pixels(width), pixels(height)));
        // Nothing lies over its neighbour (two pixels are the design's own), and no caption is cut off.
        const QWidgetList all =
            room.window->centralWidget()->findChildren<QWidget *>(QRegularExpression("^[^qT]"));
        for (const QWidget *one : all) {
            for (const QWidget *other : all)
                QVERIFY2(one == other || one->parent() != other->parent() ||
                             (one->geometry() & other->geometry()).width() <= pixels(30),
                         qPrintable(one->objectName() + " over " + other->objectName()));
        }
        for (auto *button : room.window->findChildren<QAbstractButton *>()) {
            const int text = button->fontMetrics().horizontalAdvance(button->text().remove('&'));
            QVERIFY2(text + (button->isCheckable() ? 17 : 4) <= button->width(),
                     qPrintable(button->objectName()));
        }
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
            for (const auto *control : room.window->findChildren<QWidget *>(QRegularExpression(kind)))
                frames += frameOf(picture, control);
            const QString all = QStringList(frames.values()).join(' ');
            QVERIFY2(all.size() == 4 && all[0] != u'0' && all.count(all[0]) == 4, qPrintable(kind + all));
        }
        const QImage rule = room.find("Line1")->grab().toImage();
        int dark = 0;
        for (int y = 0; y < rule.height(); ++y)
            dark += rule.pixelColor(rule.width() / 2, y).lightness() < 128;
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
            const QPoint origin = display->viewport()->mapTo(room.window.data(), QPoint(0, line.top()));
            const QRect place(origin * scale, QSize(display->viewport()->width(), line.height()) * scale);
            const QRect letters = ink(picture, place, color);
            const double height = QFontMetricsF(font, display).tightBoundingRect("B2").height();
            QVERIFY2(qAbs(letters.height() / scale - height) < 3, name);
            QVERIFY2(qAbs(letters.center().x() - place.center().x()) <= 3 * scale ||
                         !QString("RTB1 RTB3").contains(name),
                     name);
            QVERIFY2(!display->horizontalScrollBar()->maximum(), name);
        }
        const QTextEdit *letters = room.display("RTB5");
        for (int row = 0; row < 5; ++row) {
            const QRect letter =
                letters->cursorRect(QTextCursor(letters->document()->findBlockByNumber(row)));
            const QRect button = room.find(QString("cButt(%1)").arg(15 * row + 1))->geometry();
            QVERIFY(qAbs(letter.center().y() + letters->y() - button.center().y()) <= 3);
        }
    }

    /// The entry box lies over cell 10, and hides it only while something stands in it.
    void cardBehindTheEntry()
    {
        Room room;
        QWidget *client = room.window->centralWidget();
        const QRect pixel(room.entry()->geometry().center() + QPoint(8, 4), QSize(1, 1));
        room.play("c10");
        QCOMPARE(client->grab(pixel).toImage().pixelColor(0, 0), Qt::black);
        room.play("'7");
        QCOMPARE(client->grab(pixel).toImage().pixelColor(0, 0), Qt::white);
    }

    /// At every size the letters stand level with their rows, whole.
    void fontSizes()
    {
        writeFile(modMain::SettingsPath, "[Options]\nFontSz=900\nAutoCallTm=17\n"); // of the rooms before
        Room room;
        auto *font = room.find<QComboBox>("iFontSize");
        QTextEdit *letters = room.display("RTB1"), *board = room.display("RTB2");
        QCOMPARE(font->currentText() + room.find<QComboBox>("cboSec")->currentText(), "90010");
        room.window->resize(10, 10); // the least size is too small for the larger letters: both scroll
        const auto tops = [](const QTextEdit *display) {
            QList<int> found;
            for (QTextBlock line = display->document()->begin(); line.isValid(); line = line.next())
                found += display->cursorRect(QTextCursor(line)).bottom();
            return found;
        };
        const std::tuple<const char *, const char *, double> rows[] = {
            {"huge\r", "huge", 100}, {"3\r", "5", 5},    {"250\r", "100", 100}, {"12.5\r", "12.5", 12.5},
            {"\r", "", 12.5},        {"52\r", "52", 52}, {"40\t", "40", 52},    {"33\r", "33", 33}};
        for (const auto &[typed, shown, drawn] : rows) {
            font->setFocus();
            font->lineEdit()->selectAll();
            QTest::keyClick(font->lineEdit(), Qt::Key_Delete);
            room.type(typed);
            QCOMPARE(font->currentText(), shown);
            QCOMPARE(board->font().pointSizeF(), drawn);
            QVERIFY(!letters->horizontalScrollBar()->maximum());
            QVERIFY(drawn < 50 || board->horizontalScrollBar()->isVisible());
            for (const int place : {0, board->verticalScrollBar()->maximum()}) {
                board->verticalScrollBar()->setValue(place);
                QCOMPARE(tops(letters), tops(board));
            }
        }
        const auto turn = [font] {
            QWheelEvent wheel({5, 5}, font->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
            QApplication::sendEvent(font, &wheel);
            return font->currentText();
        };
        QCOMPARE(turn(), "33"); // changes only what has the focus
        font->setFocus();
        QCOMPARE(turn(), "34");
        room.find<QComboBox>("iFontSize")->setEditText("33");
        font->setFocus();
        QTest::keyClick(font->lineEdit(), Qt::Key_Up);
        QCOMPARE(font->currentText(), "32");
    }

    void resizing()
    {
        Room room;
        const double scale = room.window->logicalDpiX() / 96.0;
        QTextEdit *board = room.display("RTB2");
        room.window->resize(10, 10);
        QVERIFY(room.window->centralWidget()->width() >= 926 * scale);
        board->verticalScrollBar()->setValue(50);
        for (const QSize more : {QSize(4, 3), QSize(300, 200)}) {
            room.window->resize(room.window->size() + more);
            const QRect client = room.window->centralWidget()->rect();
            QCOMPARE(board->verticalScrollBar()->value(), 0);
            QCOMPARE(client.right() - board->geometry().right(), qRound(13 * scale));
            QCOMPARE(client.bottom() - board->geometry().bottom(), qRound(10 * scale));
            QCOMPARE(room.display("RTB1")->geometry().bottom(), board->geometry().bottom());
        }
    }

    void contrasts()
    {
        const QPalette palette = QApplication::palette();
        const QColor face("#F0F0F0"), black = palette.color(QPalette::ButtonText);
        const std::tuple<QColor, QColor, double> texts[] = {
            {palette.color(QPalette::WindowText), palette.color(QPalette::Window), 4.5},
            {palette.color(QPalette::Disabled, QPalette::ButtonText), palette.color(QPalette::Button), 4.5},
            {palette.color(QPalette::Text), palette.color(QPalette::Base), 4.5},
            {palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight), 4.5},
            {palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase), 4.5},
            {black, face, 4.5},
            {black, QColor("#A0A0A0"), 4.5},
            {Qt::red, face, 3},
            {Qt::blue, face, 3}};
        for (const auto &[text, ground, least] : texts)
            QVERIFY2(contrast(text, ground) >= least, qPrintable(text.name() + " on " + ground.name()));
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestLayout>(argc, argv);
}

#include "tst_layout.moc"
