// What another scale or size of the screen can break in the main window.

#include "support/room.h"

/// How thick the four sides of a control's frame are in pixels of the screen: "1111".
static QString frameOf(const QImage &picture, const QWidget *control)
{
    const double scale = picture.devicePixelRatio();
    const QPointF origin = control->mapTo(control->window(), QPoint(0, 0));
    QImage turned = picture.copy(QRectF(origin * scale, QSizeF(control->size()) * scale).toAlignedRect());
    const int depth = qRound(3 * scale);
    QString sides;
    for (int side = 0; side < 4; ++side, turned = turned.transformed(QTransform().rotate(90))) {
        int thick = 0;
        for (int x = 0; x < depth; ++x)
            thick += turned.pixel(x, 2 * depth) != turned.pixel(2 * depth, 2 * depth) &&
                     turned.pixel(x, 2 * depth) != 0xFFF0F0F0;
        sides += QString::number(thick);
    }
    return sides;
}

/// The last line of a display, at its height in what holds the display.
static QRect lastLine(const QTextEdit *display)
{
    return display->cursorRect(QTextCursor(display->document()->lastBlock())).translated(0, display->y());
}

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Frames are whole and even, nothing lies over its neighbour, and no caption is cut off.
    void controls()
    {
        Room room;
        room.find("Text1")->hide(); // lies over a cell
        const QImage picture = room.window->grab().toImage();
        const QRegularExpression framed("^(cButt|tDemo|RTB[34])"), own("^(?!q|Text1).");
        const auto all = room.find("client")->findChildren<QWidget *>(own);
        for (const QWidget *one : all) {
            const QString sides = one->objectName().contains(framed) ? frameOf(picture, one) : "1111";
            bool isWhole = sides[0] != '0' && sides == QString(4, sides[0]);
            const int allowed = qRound(one->logicalDpiX() / 48.0); // two pixels are the design's own
            for (const QWidget *other : all)
                isWhole &= one == other || one->parent() != other->parent() ||
                           (one->geometry() & other->geometry()).width() <= allowed;
            const QString caption = one->property("text").toString().remove('&');
            const int frame = one->inherits("QCheckBox") ? 17 : one->inherits("QPushButton") ? 4 : 0;
            isWhole &= one->fontMetrics().horizontalAdvance(caption) + frame <= one->width();
            QVERIFY2(isWhole, qPrintable(one->objectName() + ' ' + sides));
        }
        const int middle = lastLine(room.find<QTextEdit>("RTB5")).center().y();
        QVERIFY(qAbs(middle - room.find("cButt(61)")->geometry().center().y()) <= 3);
    }

    /// At every size the letters of the board stand level with its rows, and it scrolls where it is too
    /// large.
    void board()
    {
        Room room;
        auto *letters = room.find<QTextEdit>("RTB1"), *board = room.find<QTextEdit>("RTB2");
        const double finer = room.window->logicalDpiX() / 96.0;
        const int percent = int(100 * room.window->screen()->availableSize().width() / (1282 * finer));
        const double scale = finer * qMin(percent, 100) / 100;
        for (const int points : {5, 60, 100}) {
            room.window->resize(10, 10); // makes it as small as it gets
            QVERIFY((room.find("client")->size() - QSize(926, 548) * scale).isEmpty());
            room.play(QString("size %1, enter ").arg(points));
            board->setFocus();
            room.play("key PgDown");
            QCOMPARE(board->verticalScrollBar()->value() > 0, points > 50);
            QCOMPARE(lastLine(letters).bottom(), lastLine(board).bottom());
            QCOMPARE(letters->geometry().bottom(), board->geometry().bottom());
            room.window->resize(room.window->size() + QSize(points, 5 * points));
            QCOMPARE(board->verticalScrollBar()->value(), 0);
            const QPoint margin = room.find("client")->rect().bottomRight() - board->geometry().bottomRight();
            QCOMPARE(margin, (QPointF(13, 10) * scale).toPoint());
        }
    }
};

TEST_IN_ROOM(TestLayout)
#include "tst_layout.moc"
