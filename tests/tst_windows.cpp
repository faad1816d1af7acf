// The windows beside the main window: BINGO, help and its printing, about; and the end.

#include "frmMain.h"
#include "support/room.h"

#include <QDesktopServices>
#include <QPrintDialog>

#include <ctime>

namespace {

void writeHelp(const QByteArray &text)
{
    writeFile(QCoreApplication::applicationDirPath() + "/help.txt", text);
}

/// Prints the help into a file, or cancels where none is given; answers what the dialog offered, and the
/// words of the printed pages without the pages' numbers.
QString print(Room &room, const QString &file)
{
    QString said;
    QTimer hand;
    hand.callOnTimeout([&] {
        auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        said = dialog->printRange() == QAbstractPrintDialog::Selection ? "selection" : "all";
        said += dialog->findChild<QWidget *>("from")->isHidden() ? "" : " and pages";
        auto *printers = dialog->findChild<QComboBox *>("printers");
        printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
        dialog->findChild<QLineEdit *>("filename")->setText(file);
        file.isEmpty() ? dialog->reject() : dialog->accept();
    });
    hand.start(1);
    room.play("mnuPrint");
    QProcess tool;
    tool.start("pdftotext", {file, "-"});
    tool.waitForFinished();
    for (const QString &page : QString::fromUtf8(tool.readAll()).split('\f', Qt::SkipEmptyParts))
        said += ' ' + page.simplified().section(' ', 0, -2);
    return said;
}

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void browse(const QUrl &address) { m_browsed += address.host(); }

private Q_SLOTS:
    /// The word at every tick: its size, the colour of the I, and whether the blank line stays above it.
    void bingo()
    {
        Room room;
        room.play("9 cBingo");
        const QPointer<QWidget> bingo = room.find("frmBingo");
        auto *display = bingo->findChild<QTextEdit *>("RTB1");
        auto *timer = bingo->findChild<QTimer *>("Timer1");
        const auto letter = [&](int place) {
            QTextCursor cursor(display->document());
            cursor.setPosition(place);
            return display->cursorRect(cursor);
        };
        const double height = letter(2).height();
        QString seen = QString::number(timer->interval());
        for (int i = 0; i <= 16; ++i, room.tick(timer)) {
            const QPoint middle((letter(2).left() + letter(3).left()) / 2, letter(2).center().y());
            const QColor color = display->viewport()->grab({middle, QSize(1, 1)}).toImage().pixelColor(0, 0);
            seen += QString(" %1%2").arg(10 * qRound(25 * letter(2).height() / height)).arg(color.name());
            seen += letter(2).top() > 120 ? "" : " too high";
        }
        QCOMPARE(seen + QString(" %1").arg(timer->interval()),
                 "500 250#00ffff 250#ffffff 250#ffffff 250#ffffff 300#0000ff 300#ffffff 150#ff0000 "
                 "150#ffffff 300#000000 300#ffffff 150#00ff00 150#ffffff 300#ffff00 300#ffffff 150#ff00ff "
                 "150#ffffff 300#0000ff 250");
        for (const QSize size : {QSize(940, 600), QSize(3840, 2160)}) {
            bingo->resize(size);
            QVERIFY(display->size() == size && display->document()->idealWidth() <= size.width());
        }
        room.play("cBingo"); // fills it again
        QVERIFY(bingo->windowFlags() & Qt::FramelessWindowHint && letter(2).height() == height);
        QCOMPARE(bingo->geometry(), room.window->frameGeometry());
        QCOMPARE(bingo->focusWidget()->objectName(), "Text1");
        room.play("'x/_");
        QCOMPARE(room.look(), "1 B9 red 9 + frmBingo");
        QTest::qWait(QApplication::doubleClickInterval());
        room.click(display);
        QVERIFY(QTest::qWaitFor([&] { return !bingo; }));
        QCOMPARE(room.look(), "1 B9 red 9");
    }

    /// While numbers are called by themselves, for half an hour after each call, and no longer than the
    /// window is there.
    void screenIsKeptOn()
    {
        Room room;
        auto *halfHour = room.find<QTimer>("afterCall");
        QCOMPARE(halfHour->interval(), 30 * 60 * 1000);
        QString seen;
        for (const QString step :
             {"p2",  "chkAutoCall", "cPause", "cPause",      "s2",     "cPause", "half",
              "9",   "9:Y",         "half",   "'r",          "cPause", "half",   "cmdClear:N",
              "'1/", "half",        "cPause", "chkAutoCall", "half",   "'2/"}) {
            step == "half" ? room.tick(halfHour) : room.play(step);
            seen += step + (screenStaysOn ? " on, " : " off, ");
        }
        QCOMPARE(seen,
                 "p2 off, chkAutoCall on, cPause off, cPause on, s2 on, cPause on, half off, 9 on, 9:Y on, "
                 "half off, 'r on, cPause on, half on, cmdClear:N off, '1/ on, half off, cPause on, "
                 "chkAutoCall off, "
                 "half off, '2/ on, ");
        room.end();
        QVERIFY(!screenStaysOn);
    }

    void help()
    {
        writeHelp("Caf\xE9\n\n" + QByteArray("word ").repeated(1000) + QByteArray(200, '\n'));
        Room room;
        room.play("mnuHelp mnuHelp");
        auto *text = room.find<QTextEdit>("txtHelp");
        const QString before = text->toPlainText();
        QVERIFY(before.startsWith("Café\n\nword word") && !text->horizontalScrollBar()->maximum());
        room.play("key=PgDown");
        QVERIFY(text->verticalScrollBar()->value() > 0);
        room.play("key=Ctrl+Home key=Shift+Down");
        QCOMPARE(text->textCursor().selectedText(), "Café\u2029");
        room.play("'xyz key=Del");
        QCOMPARE(text->toPlainText(), before);
        writeHelp(QByteArray(256 * 1024, 'w'));
        room.find("frmHelp")->close();
        const std::clock_t start = std::clock();
        room.play("mnuHelp");
        QCOMPARE(room.look(), "0 + frmHelp");
        QVERIFY(std::clock() - start < CLOCKS_PER_SEC / 2); // a long word stops nothing
        room.find("frmHelp")->close();
        QFile::remove(QCoreApplication::applicationDirPath() + "/help.txt");
        room.play("mnuHelp");
        QCOMPARE(room.look(), "0 + frmHelp; Vellomir: Help file missing");
    }

    /// All, a selection, cancelled, and a printer that fails.
    void prints()
    {
        QString words;
        for (int i = 1; i <= 250; ++i)
            words += QString(" line%1 café").arg(i);
        writeHelp(QString(words).replace("é ", "é\n").toUtf8());
        Room room;
        room.play("mnuHelp");
        const QString folder = QDir::currentPath() + '/';
        QCOMPARE(print(room, folder + "all.pdf"), "all" + words);
        room.play("key=Down key=Shift+Down key=Shift+Down");
        QCOMPARE(print(room, folder + "part.pdf"), "selection line2 café line3 café");
        QCOMPARE(print(room, "") + print(room, "/dev/full"), "selectionselection");
        QCOMPARE(room.look(), "0 + frmHelp");
        QVERIFY(!QFile::exists("print.pdf") && room.find("frmHelp")->isActiveWindow());
    }

    void about()
    {
        QDesktopServices::setUrlHandler("https", this, "browse");
        Room room;
        room.play("mnuAbout mnuAbout cGoTo");
        const QPointer<QWidget> about = room.find("frmAbout");
        const QPoint off = about->frameGeometry().center() - about->screen()->geometry().center();
        QVERIFY(off.manhattanLength() <= 2 && about->minimumSize() == about->maximumSize());
        QCOMPARE(room.look(), "0 + frmAbout");
        QCOMPARE(m_browsed.size(), 1);
        room.play("cOK");
        QVERIFY(QTest::qWaitFor([&] { return !about; }));
        QDesktopServices::unsetUrlHandler("https");
    }

    /// Each way to the end closes the windows first, and saves the settings.
    void ends()
    {
        for (const QString way : {"close", "exit", "session"}) {
            bool isOver = way == "session";
            Room room;
            room.play("mnuAbout mnuSpeak cboSec=18");
            connect(qobject_cast<frmMain *>(room.window.data()), &frmMain::unloading, this,
                    [&, about = QPointer(room.find("frmAbout"))] {
                        isOver = way == "exit" || !about || !about->isVisible();
                    });
            if (way == "session")
                Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(room));
            else
                way == "exit" ? room.play("mnuExit") : room.end();
            QVERIFY(isOver);
            QFile file(modMain::SettingsPath);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), "[Options]\r\nFontSz=33\r\nAutoCallTm=18\r\n");
        }
    }

private:
    QStringList m_browsed;
};

int main(int argc, char *argv[])
{
    return runInRoom<TestWindows>(argc, argv);
}

#include "tst_windows.moc"
