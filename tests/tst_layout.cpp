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

    /// Nothing is cut off, or lies over its neighbour, and letters stand level with their rows of buttons.
    void neighbours()
    {
        Room room;
        const double twip = room.window->logicalDpiX() / 1440.0;
        QCOMPARE(room.find("cButt(75)")->pos(), (QPointF(6090, 2040) * twip).toPoint());
        const QRegularExpression own("^(?!q|Text1).");
        const QWidgetList all = room.window->centralWidget()->findChildren<QWidget *>(own);
        for (const QWidget *one : all) {
            for (const QWidget *other : all) { // two pixels are the design's own
                const int both = (one->geometry() & other->geometry()).width();
                QVERIFY2(one == other || one->parent() != other->parent() || both <= qRound(30 * twip),
                         qPrintable(one->objectName() + " over " + other->objectName()));
            }
            const int text =
                one->fontMetrics().horizontalAdvance(one->property("text").toString().remove('&'));
            const int frame = one->inherits("QCheckBox") ? 17 : 4;
            QVERIFY2(!one->inherits("QAbstractButton") || text + frame <= one->width(),
                     qPrintable(one->objectName()));
        }
        const QTextEdit *letters = room.display("RTB5");
        for (int row = 0; row < 5; ++row) {
            const QTextCursor start(letters->document()->findBlockByNumber(row));
            const QWidget *button = room.find(QString("cButt(%1)").arg(15 * row + 1));
            const int middle = letters->cursorRect(start).center().y() + letters->y();
            QVERIFY(qAbs(middle - button->geometry().center().y()) <= 3);
        }
        for (const char *name : {"RTB3", "RTB4", "RTB5"})
            QVERIFY2(!room.display(name)->horizontalScrollBar()->maximum(), name);
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
};

int main(int argc, char *argv[])
{
    return runInRoom<TestLayout>(argc, argv);
}

#include "tst_layout.moc"
