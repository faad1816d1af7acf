// The windows beside the main window: BINGO, help and its printing, about, voices; and the end.

#include "frmMain.h"
#include "support/room.h"

#include <QDesktopServices>
#include <QPrintDialog>

namespace {

void writeHelp(const QByteArray &text)
{
    writeFile(QCoreApplication::applicationDirPath() + "/help.txt", text);
}

/// Prints the help into a file, or cancels where none is given; answers what the dialog offered.
QString print(Room &room, const QString &file)
{
    QString offers;
    QTimer hand;
    hand.callOnTimeout([&] {
        if (auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            question->button(QMessageBox::Yes)->click(); // the file is there already
        if (auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget())) {
            offers = dialog->printRange() == QAbstractPrintDialog::Selection ? "selection" : "all";
            offers += dialog->findChild<QWidget *>("from")->isVisible() ? " and pages" : "";
            auto *printers = dialog->findChild<QComboBox *>("printers");
            printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
            dialog->findChild<QLineEdit *>("filename")->setText(file);
            file.isEmpty() ? dialog->reject() : dialog->accept();
        }
    });
    hand.start(1);
    room.play("mnuPrint");
    return offers;
}

/// The words of the printed pages, without the pages' numbers.
QStringList wordsOf(const QString &pdf)
{
    QProcess tool;
    tool.start("pdftotext", {pdf, "-"});
    tool.waitForFinished();
    QStringList words;
    for (const QString &page : QString::fromUtf8(tool.readAll()).split('\f', Qt::SkipEmptyParts))
        words += page.simplified().section(' ', 0, -2).split(' ');
    return words;
}

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void browse(const QUrl &address) { m_browsed += address.host(); }

private Q_SLOTS:
    /// The word at every tick: its size, its colour, and its line, which stays below the blank one.
    void bingo()
    {
        Room room;
        room.play("9 cBingo");
        const QPointer<QWidget> bingo = room.find("frmBingo");
        QVERIFY(bingo->geometry() == room.window->frameGeometry() &&
                bingo->windowFlags() & Qt::FramelessWindowHint);
        auto *display = bingo->findChild<QTextEdit *>("RTB1");
        auto *timer = bingo->findChild<QTimer *>("Timer1");
        QTextCursor word(display->document());
        word.setPosition(1);
        const double height = display->cursorRect(word).height();
        QString seen = QString::number(timer->interval());
        for (int i = 0; i <= 16; ++i, room.tick(timer)) {
            const QRect letter = display->cursorRect(word);
            QVERIFY2(letter.top() > 120, qPrintable(QString("tick %1: at %2").arg(i).arg(letter.top())));
            QHash<QRgb, int> colors;
            const QImage picture = display->viewport()->grab(letter.adjusted(-300, 0, 300, 0)).toImage();
            for (int p = 0; p < picture.width() * picture.height(); p += 11)
                ++colors[picture.pixel(p % picture.width(), p / picture.width())];
            colors.remove(0xFFF0F0F0);
            const QRgb most = std::max_element(colors.begin(), colors.end()).key();
            seen += QString(" %1 %2")
                        .arg(10 * qRound(25 * letter.height() / height))
                        .arg(QColor(most).name().mid(1));
        }
        QCOMPARE(
            seen,
            "500 250 00ffff 250 ffffff 250 ffffff 250 ffffff 300 0000ff 300 ffffff 150 ff0000 150 ffffff "
            "300 000000 300 ffffff 150 00ff00 150 ffffff 300 ffff00 300 ffffff 150 ff00ff 150 ffffff "
            "300 0000ff");
        QVERIFY(timer->interval() == 250 && bingo->focusWidget()->objectName() == "Text1");
        for (const QSize size : {QSize(940, 600), QSize(3840, 2160)}) {
            bingo->resize(size);
            QVERIFY(display->size() == size && display->document()->idealWidth() <= size.width());
        }
        room.play("cBingo"); // fills it again
        QVERIFY(bingo->geometry() == room.window->frameGeometry() &&
                display->cursorRect(word).height() == height);
        room.type("x\r ");
        QCOMPARE(room.look(), "1 B9 red 9 + frmBingo");
        QTest::qWait(QApplication::doubleClickInterval());
        room.click(display);
        QTRY_VERIFY(!bingo);
        QCOMPARE(room.look(), "1 B9 red 9");
    }

    void help()
    {
        writeHelp("Caf\xE9\n\n" + QByteArray("word ").repeated(1000) + QByteArray(200, '\n'));
        Room room;
        room.play("mnuHelp mnuHelp");
        auto *text = room.find<QTextEdit>("txtHelp");
        QCOMPARE(room.look(), "0 + frmHelp");
        const QString before = text->toPlainText();
        QVERIFY(before.startsWith("Café\n\nword word") && !text->horizontalScrollBar()->maximum());
        QTest::keyClick(text, Qt::Key_PageDown);
        QVERIFY(text->verticalScrollBar()->value() > 0);
        QTest::keyClick(text, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(text, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(text->textCursor().selectedText(), "Café\u2029");
        QTest::keyClicks(text, "xyz");
        QCOMPARE(text->toPlainText(), before);
        room.find("frmHelp")->close();
        writeHelp(QByteArray(256 * 1024, 'w'));
        QElapsedTimer clock;
        clock.start();
        room.play("mnuHelp");
        QCOMPARE(room.look(), "0 + frmHelp");
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
        room.find("frmHelp")->close();
        QFile::remove(QCoreApplication::applicationDirPath() + "/help.txt");
        room.play("mnuHelp");
        QCOMPARE(room.look(), "0 + frmHelp; Vellomir: Help file missing");
    }

    /// All, a selection, cancelled, and a printer that fails.
    void prints()
    {
        QStringList words;
        for (int i = 1; i <= 250; ++i)
            words << "line" + QString::number(i) << "café";
        const QString pdf = QDir::current().filePath("printed.pdf");
        writeHelp(words.join(' ').replace("é ", "é\n").toUtf8());
        Room room;
        room.play("mnuHelp");
        QCOMPARE(print(room, pdf), "all");
        QCOMPARE(wordsOf(pdf), words);
        for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier, Qt::ShiftModifier})
            QTest::keyClick(room.find<QTextEdit>("txtHelp"), Qt::Key_Down, modifier);
        QCOMPARE(print(room, pdf), "selection");
        QCOMPARE(wordsOf(pdf), words.mid(2, 4));
        QCOMPARE(print(room, "") + print(room, "/dev/full"), "selectionselection");
        QCOMPARE(room.look(), "0 + frmHelp");
        QVERIFY(!QFile::exists("print.pdf") && room.find("frmHelp")->isActiveWindow());
    }

    void about()
    {
        QDesktopServices::setUrlHandler("https", this, "browse");
        Room room;
        for (int round = 1; round <= 2; ++round) {
            room.play("mnuAbout mnuAbout cGoTo");
            const QPointer<QWidget> about = room.find("frmAbout");
            const QPoint off = about->frameGeometry().center() - about->screen()->geometry().center();
            QVERIFY2(off.manhattanLength() <= 2, "opens in the middle, also after it was moved");
            QVERIFY(m_browsed.size() == round && about->minimumSize() == about->maximumSize());
            about->move(3, 4);
            QCOMPARE(room.look(), "0 + frmAbout");
            room.play("cOK");
            QTRY_VERIFY(!about);
        }
        QDesktopServices::unsetUrlHandler("https");
    }

    void voices()
    {
        Room room;
        room.play("voice=1 mnuSpeak mnuSpeak");
        const auto list = [&room] { return room.find<QListWidget>("List1"); };
        QTRY_COMPARE(list()->count(), 3);
        QVERIFY(list()->selectedItems().isEmpty() && room.find<QSlider>("Slider1")->value() == 0);
        room.play("cListen cSave");
        const QString please = "; Vellomir: Please select a voice from the list box.";
        QCOMPARE(room.look(), "0 + frmVoices" + please + please);
        list()->setCurrentRow(0);
        room.find("frmVoices")->close();
        QTRY_VERIFY(!room.window->findChild<QWidget *>("frmVoices"));
        room.play("mnuSpeak");
        QTRY_COMPARE(list()->count(), 3);
        list()->setCurrentRow(2);
        room.find<QSlider>("Slider1")->setValue(99);
        room.play("cListen");
        QCOMPARE(room.look(), "0 + frmVoices; Bee 4, Oh 62, Eye 25 2 10");
        room.play("chkMakeVoiceCall 9 ~");
        QCOMPARE(room.look(), "1 B9 red 9 + frmVoices; Bee, 9 1 0; Bee, 9 1 0"); // not yet
        room.play("cSave 61 ~");
        QCOMPARE(room.look(), "2 O61/B9 red 9 61; Oh, 61 2 10; Oh, 6 , 1 2 10");
    }

    /// What is typed and clicked meanwhile is taken afterwards; the time stands still.
    void sample()
    {
        Room room;
        room.play("hush chkAutoCall p1 mnuSpeak");
        QTRY_COMPARE(room.find<QListWidget>("List1")->count(), 3);
        room.find<QListWidget>("List1")->setCurrentRow(0);
        QTimer::singleShot(50, room.window, [&] {
            room.play("s5 a 7");
            QCOMPARE(room.look(), "0 step 100 Pause counts. + frmVoices; Bee 4, Oh 62, Eye 25 0 0");
            room.play(".");
        });
        room.play("cListen a");
        QCOMPARE(room.look(), "1 B7 red 7 lit agmsy step 1500 Pause counts. focus cPause + frmVoices");
    }

    void noService()
    {
        Room room;
        room.speech.isInstalled = false;
        room.play("mnuSpeak");
        QCOMPARE(room.look(),
                 "0 + frmVoices; Run-Time Error: Desc: No speech service is installed. Err #: 1");
        room.find("frmVoices")->close();
        room.speech.isInstalled = true;
        QTRY_VERIFY(!room.window->findChild<QWidget *>("frmVoices"));
        room.play("mnuSpeak");
        QTRY_VERIFY(room.speech.engine);
        Q_EMIT room.speech.engine->failed(9, "it went away");
        QCOMPARE(room.look(), "0 + frmVoices; Run-Time Error: Desc: it went away Err #: 9");
    }

    /// Both ways to the end close the windows first; they and the end of the session save the settings.
    void ends()
    {
        writeHelp("Help\n");
        for (const char *way : {"close", "exit", "session"}) {
            Room room;
            room.play("mnuHelp mnuAbout mnuSpeak cboSec=18");
            const QPointer<QWidget> about = room.find("frmAbout");
            bool isClosedFirst = false;
            connect(qobject_cast<frmMain *>(room.window.data()), &frmMain::unloading, this,
                    [&] { isClosedFirst = !about || !about->isVisible(); });
            if (way == QString("exit"))
                QTimer::singleShot(0, room.find<QAction>("mnuExit"), &QAction::trigger);
            if (way == QString("session"))
                Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(room));
            else
                room.end();
            QVERIFY(way != QString("close") || isClosedFirst);
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
