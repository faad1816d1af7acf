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
            const bool hasCaption = one->inherits("QAbstractButton") || one->inherits("QLabel");
            QVERIFY2(!hasCaption || text + (one->inherits("QLabel") ? 0 : frame) <= one->width(),
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

    /// At every size of letters and window the letters of the columns stand level with their rows, whole, and
    /// the board scrolls where it is too large.
    void sizes()
    {
        Room().end();
        writeFile(modMain::SettingsPath, "[Options]\nFontSz=900\nAutoCallTm=17\n");
        Room room(true);
        QCOMPARE(room.find<QComboBox>("iFontSize")->currentText(), "900");
        QCOMPARE(room.find<QComboBox>("cboSec")->currentText(), "10");
        QTextEdit *letters = room.display("RTB1"), *board = room.display("RTB2");
        const auto bottom = [](const QTextEdit *display) {
            return display->cursorRect(QTextCursor(display->document()->lastBlock())).bottom();
        };
        const double scale = room.window->logicalDpiX() / 96.0;
        for (const auto &[points, more] : {std::pair(5, 0), std::pair(100, 3), std::pair(60, 300)}) {
            room.window->resize(10, 10); // makes it as small as it gets
            const QRect client = room.window->centralWidget()->rect();
            QVERIFY((client.size() - QSize(926, 548) * scale).isEmpty());
            room.play(QString("font %1, enter ").arg(points));
            board->setFocus();
            for (const char *key : {"key PgUp", "key PgDown"}) {
                room.play(key);
                QCOMPARE(board->verticalScrollBar()->value() > 0,
                         points > 50 && key == QString("key PgDown"));
                QCOMPARE(bottom(letters), bottom(board));
                QVERIFY(!letters->horizontalScrollBar()->maximum());
            }
            QWheelEvent wheel({5, 5}, letters->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, {}, {}, {}, false);
            QApplication::sendEvent(letters->viewport(), &wheel);
            QCOMPARE(board->verticalScrollBar()->value() < board->verticalScrollBar()->maximum(),
                     points > 50);
            room.window->resize(room.window->size() + QSize(more + 1, more));
            QCOMPARE(board->verticalScrollBar()->value(), 0);
            const QPoint margin =
                room.window->centralWidget()->rect().bottomRight() - board->geometry().bottomRight();
            QCOMPARE(margin, QPoint(qRound(13 * scale), qRound(10 * scale)));
            QCOMPARE(letters->geometry().bottom(), board->geometry().bottom());
        }
    }

    /// The list of sizes turns by keys, and by the wheel only while it has the focus. A size that is none of
    /// its entries stays until another is chosen.
    void turns()
    {
        Room room;
        auto *font = room.find<QComboBox>("iFontSize");
        for (const char *shown : {"33", "34", "36"}) {
            QWheelEvent wheel({5, 5}, font->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
            QApplication::sendEvent(font, &wheel);
            QCOMPARE(font->currentText(), shown);
            font->setFocus();
        }
        const std::tuple<const char *, const char *, const char *> rows[] = {
            {"37", "Up", "36"},
            {"37", "PgDown", "38"},
            {"60", "Down", "60"},
            {"37", "Alt+Down, key Return", "37"},
            {"37", "Alt+Down, key Alt+Up", "37"},
            {"37", "F4, key F4", "37"},
            {"37", "Alt+Down, key Escape", "37"},
            {"37", "Alt+Down, key Up, key Return", "36"},
            {"37", "Alt+Down, key Down, key Return", "38"},
            {"36", "Alt+Down, key Down, key Return", "38"}};
        for (const auto &[typed, keys, shown] : rows) {
            room.play(QString("font %1, key %2").arg(typed, keys));
            QVERIFY2(font->currentText() == shown && !QApplication::activePopupWidget(), keys);
        }
        QCOMPARE(room.look()["points"], "38");
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestLayout>(argc, argv);
}

#include "tst_layout.moc"
