// How the main window looks, at every scale of the screen.

#include "support/room.h"

namespace {

/// How thick the frame of a control is in pixels of the screen, side by side.
QString frameOf(const QImage &picture, const QWidget *control)
{
    const double scale = picture.devicePixelRatio();
    const QPointF origin = control->mapTo(control->window(), QPoint(0, 0));
    QImage turned = picture.copy(QRectF(origin * scale, QSizeF(control->size()) * scale).toAlignedRect());
    const int depth = qRound(3 * scale);
    const QRgb inside = turned.pixel(2 * depth, 2 * depth);
    QString sides;
    for (int side = 0; side < 4; ++side, turned = turned.transformed(QTransform().rotate(90))) {
        int thick = 0;
        for (int x = 0; x < depth; ++x)
            thick += turned.pixel(x, 2 * depth) != inside && turned.pixel(x, 2 * depth) != 0xFFF0F0F0;
        sides += QString::number(thick);
    }
    return sides;
}

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void places()
    {
        Room room;
        const double twip = room.window->logicalDpiX() / 1440.0;
        QCOMPARE(room.find("cButt(75)")->pos(), (QPointF(6090, 2040) * twip).toPoint());
        QCOMPARE(room.find("cDemoButt(21)")->pos(), (QPointF(2280, 2040) * twip).toPoint());
        QCOMPARE(room.find("RTB2")->geometry().topLeft(), (QPointF(720, 2865) * twip).toPoint());
        // Nothing lies over its neighbour (two pixels are the design's own), and no caption is cut off.
        const QRegularExpression own("^(?!q|Text1).");
        const QWidgetList all = room.window->centralWidget()->findChildren<QWidget *>(own);
        for (const QWidget *one : all) {
            for (const QWidget *other : all) {
                const int both = (one->geometry() & other->geometry()).width();
                QVERIFY2(one == other || one->parent() != other->parent() || both <= qRound(30 * twip),
                         qPrintable(one->objectName() + " over " + other->objectName()));
            }
        }
        for (const auto *button : room.window->findChildren<QAbstractButton *>()) {
            const int text = button->fontMetrics().horizontalAdvance(button->text().remove('&'));
            QVERIFY2(text + (button->isCheckable() ? 17 : 4) <= button->width(),
                     qPrintable(button->objectName()));
        }
    }

    /// Every side of every frame is there, as thick as the others, at every scale.
    void frames()
    {
        Room room;
        room.play("enter 33, choose mnuAbout");
        room.look();
        room.find("Text1")->hide();
        const QImage picture = room.window->grab().toImage();
        for (const char *kind : {"^cButt", "^tDemo", "^RTB[34]"}) {
            QSet<QString> frames;
            for (const auto *control : room.window->findChildren<QWidget *>(QRegularExpression(kind)))
                frames += frameOf(picture, control);
            const QString sides = QStringList(frames.values()).join(", ");
            QVERIFY2(sides[0] != '0' && sides == QString(4, sides[0]), qPrintable(kind + sides));
        }
        const QImage rule = room.find("Line1")->grab().toImage();
        QVERIFY(ink(rule, rule.rect(), [](const QColor &c) { return c == Qt::black; }).isValid());
    }

    /// The displays: their colours, the heights of their letters in points, and where they stand.
    void displays()
    {
        Room room;
        room.play("enter 75, enter 48, enter 46, enter 47, enter 2");
        room.look();
        const QImage picture = room.window->grab().toImage();
        const double scale = picture.devicePixelRatio();
        const std::tuple<const char *, QColor, double, bool> rows[] = {
            {"RTB1", Qt::blue, 33, true},      {"RTB2", Qt::black, 33, false}, {"RTB3", Qt::red, 95.25, true},
            {"RTB4", Qt::black, 39.75, false}, {"RTB5", Qt::blue, 17, true},
        };
        for (const auto &[name, color, points, isCentred] : rows) {
            const QTextEdit *display = room.display(name);
            QFont font = display->font();
            font.setPointSizeF(points);
            const QRect line = display->cursorRect(QTextCursor(display->document()));
            const QPoint origin = room.placeOf(display->viewport(), {0, line.top()});
            const QRect place(origin * scale, QSize(display->viewport()->width(), line.height()) * scale);
            const QRect letters = ink(picture, place, [&](const QColor &c) { return c == color; });
            const double height = QFontMetricsF(font, display).tightBoundingRect("B2").height();
            QVERIFY2(qAbs(letters.height() / scale - height) < 3, name);
            const int off = letters.center().x() - place.center().x();
            QVERIFY2(!isCentred || qAbs(off) <= 3 * scale, name);
            QVERIFY2(!display->horizontalScrollBar()->maximum(), name);
        }
        const QTextEdit *letters = room.display("RTB5");
        for (int row = 0; row < 5; ++row) {
            const QTextCursor start(letters->document()->findBlockByNumber(row));
            const QWidget *button = room.find(QString("cButt(%1)").arg(15 * row + 1));
            const int middle = letters->cursorRect(start).center().y() + letters->y();
            QVERIFY(qAbs(middle - button->geometry().center().y()) <= 3);
        }
    }

    /// At every size the letters stand level with their rows, whole.
    void fontSizes()
    {
        Room().end();
        writeFile(modMain::SettingsPath, "[Options]\nFontSz=900\nAutoCallTm=17\n");
        Room room(true);
        auto *font = room.find<QComboBox>("iFontSize");
        QTextEdit *letters = room.display("RTB1"), *board = room.display("RTB2");
        QCOMPARE(font->currentText() + room.find<QComboBox>("cboSec")->currentText(), "90010");
        room.window->resize(10, 10); // the least size is too small for the larger letters: both scroll
        const auto bottom = [](const QTextEdit *display) {
            return display->cursorRect(QTextCursor(display->document()->lastBlock())).bottom();
        };
        const std::tuple<const char *, const char *, double> rows[] = {
            {"enter huge", "huge", 100},
            {"enter 3", "5", 5},
            {"enter 250", "100", 100},
            {"enter 12.5", "12.5", 12.5},
            {"enter , click cmdClear: Yes", "", 12.5},
            {"type 40, key Tab", "40", 12.5},
            {"type 37, key Up", "36", 36},
            {"type 33, key Down", "34", 34}};
        for (const auto &[typed, shown, drawn] : rows) {
            font->setFocus();
            room.play(QString("key Ctrl+A, key Del, ") + typed);
            QCOMPARE(font->currentText(), shown);
            QCOMPARE(board->font().pointSizeF(), drawn);
            QVERIFY(!letters->horizontalScrollBar()->maximum());
            QVERIFY(drawn < 50 || board->horizontalScrollBar()->isVisible());
            for (const int place : {0, board->verticalScrollBar()->maximum()}) {
                board->verticalScrollBar()->setValue(place);
                QCOMPARE(bottom(letters), bottom(board));
            }
        }
        for (const QString shown : {"34", "36"}) { // the wheel turns only what has the focus
            QWheelEvent wheel({5, 5}, font->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
            QApplication::sendEvent(font, &wheel);
            QCOMPARE(font->currentText(), shown);
            font->setFocus();
        }
    }

    void resizing()
    {
        Room room;
        const double scale = room.window->logicalDpiX() / 96.0;
        room.window->resize(10, 10);
        QVERIFY((room.window->centralWidget()->size() - QSize(926, 548) * scale).isEmpty());
        QTextEdit *board = room.display("RTB2");
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

    void contrasts() // of WCAG 2
    {
        const auto toLinear =
            QColorSpace(QColorSpace::SRgb).transformationToColorSpace(QColorSpace::SRgbLinear);
        const auto light = [&toLinear](const QColor &color) {
            const QColor seen = toLinear.map(color);
            return 0.05 + 0.2126 * seen.redF() + 0.7152 * seen.greenF() + 0.0722 * seen.blueF();
        };
        const QPalette p = QApplication::palette();
        const std::tuple<QColor, QColor, double> texts[] = {
            // large letters need less
            {p.windowText().color(), p.window().color(), 4.5},
            {p.buttonText().color(), "#A0A0A0", 4.5},
            {p.color(QPalette::Disabled, QPalette::ButtonText), p.button().color(), 4.5},
            {p.text().color(), p.base().color(), 4.5},
            {p.highlightedText().color(), p.highlight().color(), 4.5},
            {p.toolTipText().color(), p.toolTipBase().color(), 4.5},
            {Qt::red, p.window().color(), 3},
            {Qt::blue, p.window().color(), 3}};
        for (const auto &[text, ground, least] : texts)
            QVERIFY2(qMax(light(text), light(ground)) / qMin(light(text), light(ground)) >= least,
                     qPrintable(text.name() + ground.name()));
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestLayout>(argc, argv);
}

#include "tst_layout.moc"
