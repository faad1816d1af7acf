// The windows beside the main window: BINGO, help and its printing, about, voices.

#include "support/room.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPrintDialog>
#include <QProcess>
#include <QScrollBar>
#include <QSlider>

namespace {

void writeHelp(const QByteArray &text)
{
    QFile file(QCoreApplication::applicationDirPath() + "/help.txt");
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no help text");
}

/// Answers every printer dialog: prints into a file, or cancels where none is given.
class PrinterChoice
{
public:
    explicit PrinterChoice(const QString &file)
    {
        m_timer.callOnTimeout([this, file] {
            auto *modal = QApplication::activeModalWidget();
            if (auto *question = qobject_cast<QMessageBox *>(modal)) // the file is there already
                question->button(QMessageBox::Yes)->click();
            if (auto *dialog = qobject_cast<QPrintDialog *>(modal))
                answer(dialog, file);
        });
        m_timer.start(1);
    }
    QString offers;

private:
    void answer(QPrintDialog *dialog, const QString &file)
    {
        offers = dialog->printRange() == QAbstractPrintDialog::Selection ? "selection" : "all";
        offers += dialog->findChild<QWidget *>("from")->isVisible() ? " and pages" : "";
        auto *printers = dialog->findChild<QComboBox *>("printers");
        printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
        dialog->findChild<QLineEdit *>("filename")->setText(file);
        file.isEmpty() ? dialog->reject() : dialog->accept();
    }
    QTimer m_timer;
};

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
    /// The word at every tick: its size, its colour, and whether its line stands where it stood, 100 points
    /// below.
    void bingo()
    {
        Room room;
        room.play("9 cBingo");
        const QPointer<QWidget> bingo = room.find("frmBingo");
        QCOMPARE(bingo->geometry(), room.window->frameGeometry());
        QVERIFY(bingo->windowFlags() & Qt::FramelessWindowHint);
        auto *display = bingo->findChild<QTextEdit *>("RTB1");
        auto *timer = bingo->findChild<QTimer *>("Timer1");
        QCOMPARE(timer->interval(), 500);
        QTextCursor word(display->document());
        word.setPosition(1);
        const double height = display->cursorRect(word).height();
        QStringList seen;
        for (int i = 0; i <= 16; ++i) {
            const QRect letter = display->cursorRect(word);
            QVERIFY2(letter.top() > 120, qPrintable(QString("tick %1: at %2").arg(i).arg(letter.top())));
            QHash<QRgb, int> colors;
            const QImage picture = display->viewport()->grab().toImage();
            for (int y = letter.top(); y < qMin(letter.bottom(), picture.height()); y += 3) {
                for (int x = 0; x < picture.width(); x += 3)
                    ++colors[picture.pixel(x, y)];
            }
            colors.remove(0xFFF0F0F0);
            const auto most = std::max_element(colors.begin(), colors.end());
            seen += QString("%1 %2")
                        .arg(10 * qRound(25 * letter.height() / height))
                        .arg(QColor(most.key()).name());
            room.tick(timer);
        }
        QCOMPARE(seen.join(' ').remove('#'),
                 "250 00ffff 250 ffffff 250 ffffff 250 ffffff 300 0000ff 300 ffffff 150 ff0000 150 ffffff "
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
        QTest::qWait(QApplication::doubleClickInterval());
        room.type("x\r ");
        QCOMPARE(room.look(), "1 B9 red 9 + frmBingo");
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
        QTest::keyClick(text, Qt::Key_Delete);
        QCOMPARE(text->toPlainText(), before);
        room.find("frmHelp")->close();
        writeHelp(QByteArray(256 * 1024, 'w'));
        QElapsedTimer clock;
        clock.start();
        room.play("mnuHelp");
        QCOMPARE(room.look(), "0 + frmHelp");
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
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
        const auto print = [&room](const QString &file) {
            const PrinterChoice choice(file);
            room.play("mnuPrint");
            return choice.offers;
        };
        QCOMPARE(print(pdf), "all");
        QCOMPARE(wordsOf(pdf), words);
        for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier, Qt::ShiftModifier})
            QTest::keyClick(room.find<QTextEdit>("txtHelp"), Qt::Key_Down, modifier);
        QCOMPARE(print(pdf), "selection");
        QCOMPARE(wordsOf(pdf), words.mid(2, 4));
        QCOMPARE(print("") + print("/dev/full"), "selectionselection");
        QCOMPARE(room.look(), "0 + frmHelp");
        QVERIFY(!QFile::exists("print.pdf"));
    }

    void about()
    {
        QDesktopServices::setUrlHandler("https", this, "browse");
        Room room;
        for (int round = 1; round <= 2; ++round) {
            room.play("mnuAbout mnuAbout cGoTo");
            QCOMPARE(m_browsed.size(), round);
            const QPointer<QWidget> about = room.find("frmAbout");
            const QPoint off = about->frameGeometry().center() - about->screen()->geometry().center();
            QVERIFY2(off.manhattanLength() <= 2, "opens in the middle, also after it was moved");
            about->move(3, 4);
            QVERIFY(about->size() == QSize(312, 253) && about->minimumSize() == about->maximumSize());
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
        auto *list = room.find<QListWidget>("List1");
        auto *speed = room.find<QSlider>("Slider1");
        QTRY_COMPARE(list->count(), 3);
        QVERIFY(list->selectedItems().isEmpty() && speed->value() == 0);
        room.play("cListen cSave");
        const QString please = "; Vellomir: Please select a voice from the list box.";
        QCOMPARE(room.look(), "0 + frmVoices" + please + please);
        list->setCurrentRow(0);
        room.find("frmVoices")->close();
        QTRY_VERIFY(!room.window->findChild<QWidget *>("frmVoices"));
        room.play("mnuSpeak");
        list = room.find<QListWidget>("List1");
        speed = room.find<QSlider>("Slider1");
        QTRY_COMPARE(list->count(), 3);
        list->setCurrentRow(2);
        speed->setValue(99);
        room.play("cListen");
        QCOMPARE(room.look(), "0 + frmVoices; Bee 4, Oh 62, Eye 25 2 10");
        room.play("8 chkMakeVoiceCall 9 ~");
        QCOMPARE(room.look(), "2 B9/B8 red 8-9 + frmVoices; Bee, 9 1 0; Bee, 9 1 0"); // not yet
        room.play("cSave 61 ~");
        QCOMPARE(room.look(), "3 O61/B9  B8 red 8-9 61; Oh, 61 2 10; Oh, 6 , 1 2 10");
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
        room.play("mnuSpeak cListen");
        QCOMPARE(room.look(),
                 "0 + frmVoices; Run-Time Error: Desc: No speech service is installed. Err #: 1; "
                 "Vellomir: Please select a voice from the list box.");
        room.speech.isInstalled = true;
        room.find("frmVoices")->close();
        QTRY_VERIFY(!room.window->findChild<QWidget *>("frmVoices"));
        room.play("mnuSpeak");
        QTRY_VERIFY(room.speech.engine);
        Q_EMIT room.speech.engine->failed(9, "it went away");
        QCOMPARE(room.look(), "0 + frmVoices; Run-Time Error: Desc: it went away Err #: 9");
    }

    /// Both ways to the end close the windows and save the settings.
    void ends()
    {
        writeHelp("Help\n");
        for (const bool isMenu : {false, true}) {
            Room room;
            room.play("mnuHelp mnuAbout mnuSpeak cboSec=18");
            if (isMenu)
                QTimer::singleShot(0, room.find<QAction>("mnuExit"), &QAction::trigger);
            room.end();
            QVERIFY(!room.window);
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
