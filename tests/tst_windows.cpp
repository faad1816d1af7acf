// The help and the about window, their printing, and how they live beside the main window.

#include "appearance.h"
#include "frmAbout.h"
#include "frmHelp.h"
#include "publisher.h"
#include "support/main_window.h"

#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QPrintDialog>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>

namespace {

/// Answers every printer dialog: prints into a file, or cancels when none is given.
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
        offers += dialog->testOption(QAbstractPrintDialog::PrintPageRange) ? " and pages" : "";
        auto *printers = dialog->findChild<QComboBox *>("printers");
        printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
        dialog->findChild<QLineEdit *>("filename")->setText(file);
        file.isEmpty() ? dialog->reject() : dialog->accept();
    }

    QTimer m_timer;
};

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void browse(const QUrl &address) { m_browsed += address.toString(); }

private Q_SLOTS:
    void initTestCase()
    {
        controls::applyAppearance(*qApp);
        m_owner.show();
    }

    void about()
    {
        QDesktopServices::setUrlHandler("https", this, "browse");
        for (int round = 1; round <= 2; ++round) {
            const QPointer about = new frmAbout(&m_owner);
            about->Form_Load();
            about->show();
            const QPoint off = about->frameGeometry().center() - m_owner.screen()->geometry().center();
            QVERIFY2(off.manhattanLength() <= 2, "opens in the middle, also after it was moved");
            about->move(3, 4);
            QVERIFY(about->size() == QSize(312, 253) && about->minimumSize() == about->maximumSize());
            QRegion taken;
            for (QWidget *widget : about->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
                QVERIFY2(about->rect().contains(widget->geometry()), qPrintable(widget->objectName()));
                QVERIFY2(!taken.intersects(widget->geometry()), qPrintable(widget->objectName()));
                QVERIFY2(widget->width() >= widget->sizeHint().width(), qPrintable(widget->objectName()));
                taken += widget->geometry();
            }
            MainWindow::click(about->findChild<QWidget *>("cGoTo"));
            QCOMPARE(m_browsed, QStringList(round, publisher::address));
            QTest::keyClick(about->findChild<QWidget *>("cOK"), Qt::Key_Return);
            QTRY_VERIFY(!about);
        }
        QDesktopServices::unsetUrlHandler("https");
    }

    void help()
    {
        const auto help =
            openHelp("Caf\xE9\n\n" + QByteArray("word ").repeated(1000) + QByteArray(200, '\n'));
        QTextEdit *text = textOf(help);
        QVERIFY(help->windowType() == Qt::Tool && help->minimumSize() == help->maximumSize());
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

        QElapsedTimer clock;
        clock.start();
        openHelp(QByteArray("word ").repeated(1'000'000)); // one line
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
    }

    void prints()
    {
        QStringList words;
        for (int i = 1; i <= 250; ++i)
            words << "line" + QString::number(i) << "café";
        const auto help = openHelp(words.join(' ').replace("é ", "é\n").toUtf8());
        QCOMPARE(print(help.get(), "all"), words);
        for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier, Qt::ShiftModifier})
            QTest::keyClick(textOf(help), Qt::Key_Down, modifier);
        QCOMPARE(print(help.get(), "selection"), words.mid(2, 4));
    }

    void failedPrintingIsQuiet()
    {
        const auto help = openHelp("one\n");
        const Answer box(QMessageBox::Ok);
        for (const char *file : {"", "/dev/full"}) {
            const PrinterChoice choice(file);
            help->findChild<QAction *>("mnuPrint")->trigger();
            QCOMPARE(choice.offers, "all");
            QVERIFY(box.said.isEmpty() && help->isVisible());
            QVERIFY2(!QFile::exists("print.pdf"), "printed to where the dialog proposed");
        }
    }

    void closeWithTheMainWindow()
    {
        MainWindow w;
        const Answer ok(QMessageBox::Ok); // there is no help text beside a test
        w.choose("mnuHelp");
        w.choose("mnuAbout");
        const QPointer<QWidget> help = w.find("frmHelp"), about = w.find("frmAbout");
        int endings = 0;
        connect(&w.window, &frmMain::unloading, this,
                [&] { endings += !help->isVisible() && !about->isVisible(); });
        w.window.close();
        w.choose("mnuExit");
        QCOMPARE(endings, 2);
        QTRY_VERIFY(!help && !about);
    }

private:
    std::unique_ptr<frmHelp> openHelp(const QByteArray &text)
    {
        QFile file(m_folder.filePath("help.txt"));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no help file");
        file.close();
        auto help = std::make_unique<frmHelp>(m_folder.path(), &m_owner);
        help->Form_Load();
        help->show();
        if (!QTest::qWaitForWindowExposed(help.get()))
            qFatal("no help window");
        return help;
    }
    template <class Pointer>
    static QTextEdit *textOf(const Pointer &help)
    {
        return help->template findChild<QTextEdit *>("txtHelp");
    }
    /// The words of the printed pages, without the pages' numbers.
    QStringList print(const frmHelp *help, const QString &offers) const
    {
        const QString pdf = m_folder.filePath("printed.pdf");
        const PrinterChoice choice(pdf);
        help->findChild<QAction *>("mnuPrint")->trigger();
        if (choice.offers != offers)
            return {"offers " + choice.offers};
        QProcess tool;
        tool.start("pdftotext", {pdf, "-"});
        QStringList words;
        if (tool.waitForFinished()) {
            for (const QString &page : QString::fromUtf8(tool.readAll()).split('\f', Qt::SkipEmptyParts))
                words += page.simplified().section(' ', 0, -2).split(' ');
        }
        return words;
    }

    QTemporaryDir m_folder;
    QWidget m_owner;
    QStringList m_browsed;
};

QTEST_MAIN(TestWindows)
#include "tst_windows.moc"
