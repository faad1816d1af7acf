// The help and the about window, their printing, and how they live beside the main window.

#include "platform/appearance.h"
#include "publisher.h"
#include "support/main_window.h"
#include "windows/frmAbout.h"
#include "windows/frmAbout_design.h"
#include "windows/frmHelp.h"

#include <QAction>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <QPrintDialog>
#include <QProcess>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QUrl>

namespace {

/// Stands in for the desktop's browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl &address) { opened += address.toString(); }
};

/// Answers the next printer dialog: prints into a file, or cancels when none is given.
class PrinterChoice
{
public:
    explicit PrinterChoice(const QString &file = {})
    {
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, file] { answer(file); });
        m_timer.start();
    }

    bool shown = false;
    bool offersSelection = false;
    bool offersPages = false;

private:
    void answer(const QString &file)
    {
        auto *modal = QApplication::activeModalWidget();
        if (auto *question = qobject_cast<QMessageBox *>(modal)) { // the file is there already
            question->button(QMessageBox::Yes)->click();
            return;
        }
        auto *dialog = qobject_cast<QPrintDialog *>(modal);
        if (!dialog || shown)
            return;
        shown = true;
        offersSelection = dialog->printRange() == QAbstractPrintDialog::Selection;
        offersPages = dialog->testOption(QAbstractPrintDialog::PrintPageRange);
        if (file.isEmpty())
            dialog->reject();
        auto *printers = dialog->findChild<QComboBox *>(QStringLiteral("printers"));
        printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
        dialog->findChild<QLineEdit *>(QStringLiteral("filename"))->setText(file);
        if (!file.isEmpty())
            dialog->accept();
    }

    QTimer m_timer;
};

QString runOn(const QString &pdf, const QString &tool, const QStringList &arguments)
{
    QProcess process;
    process.start(tool, QStringList(arguments) << pdf << QStringLiteral("-"));
    return process.waitForFinished() ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

/// The words of a printed file, page numbers aside.
QStringList printedWords(const QString &pdf)
{
    QStringList words;
    for (const QString &page : runOn(pdf, QStringLiteral("pdftotext"), {}).split(u'\f', Qt::SkipEmptyParts)) {
        words += page.simplified().split(u' ');
        words.removeLast();
    }
    return words;
}

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aboutLooksAsDesigned();
    void aboutOpensCentredAgain();
    void aboutLeadsToTheWebSite();
    void helpShowsItsFile();
    void helpIsReadWithTheKeyboard();
    void helpWithoutAFile_data();
    void helpWithoutAFile();
    void hugeHelpOpensAtOnce();
    void prints_data();
    void prints();
    void failedPrintingIsQuiet();
    void oneWindowOfEach();
    void closingTheMainWindowClosesAll();

private:
    void writeHelp(const QByteArray &text) const;
    QTextEdit *textOf(const frmHelp *help) const
    {
        return help->findChild<QTextEdit *>(QStringLiteral("txtHelp"));
    }
    static void choose(const QWidget *window, const char *command)
    {
        window->findChild<QAction *>(QString::fromLatin1(command))->trigger();
    }

    QTemporaryDir m_folder;
    QWidget m_owner;
};

void TestWindows::initTestCase()
{
    platform::applyAppearance(*qApp);
    m_owner.resize(600, 400);
    m_owner.show();
}

void TestWindows::writeHelp(const QByteArray &text) const
{
    QFile file(m_folder.filePath(QStringLiteral("help.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void TestWindows::aboutLooksAsDesigned()
{
    const frmAbout about(&m_owner);
    QCOMPARE(about.windowTitle(), QStringLiteral("About"));
    QCOMPARE(about.size(), QSize(312, 253));
    QCOMPARE(about.minimumSize(), about.maximumSize());
    QCOMPARE(about.windowType(), Qt::Tool);
    QRegion taken;
    for (const platform::DesignRow &row : aboutDesign::controls()) {
        const auto *widget = about.findChild<QWidget *>(QString::fromLatin1(row.name));
        QVERIFY2(widget && widget->pos() == QPoint(row.left / 15, row.top / 15), row.name);
        QVERIFY2(about.rect().contains(widget->geometry()), row.name);
        QVERIFY2(!taken.intersects(widget->geometry()), row.name);
        QVERIFY2(widget->width() >= widget->sizeHint().width() || row.kind == platform::Kind::Line, row.name);
        taken += widget->geometry();
    }
    const auto caption = [&](const char *name) {
        return about.findChild<QLabel *>(QString::fromLatin1(name))->text();
    };
    QCOMPARE(caption("Label2"), QStringLiteral("Version 3.1"));
    QCOMPARE(caption("Label6"), QString::fromUtf8(publisher::telephone));
    QVERIFY(caption("Label7").contains(QStringLiteral("MIT")));
    QCOMPARE(about.focusWidget()->objectName(), QStringLiteral("cOK"));
    QCOMPARE(about.focusWidget()->nextInFocusChain()->objectName(), QStringLiteral("cGoTo"));
}

void TestWindows::aboutOpensCentredAgain()
{
    const QPoint middle = m_owner.screen()->geometry().center();
    for (int i = 0; i < 2; ++i) {
        QPointer<QWidget> about = new frmAbout(&m_owner);
        about->show();
        const QPoint off = about->frameGeometry().center() - middle;
        QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
        about->move(3, 4);
        QTest::keyClick(about->findChild<QWidget *>(QStringLiteral("cOK")), Qt::Key_Return);
        QTRY_VERIFY(!about);
    }
}

void TestWindows::aboutLeadsToTheWebSite()
{
    const Browser browser;
    frmAbout about(&m_owner);
    about.show();
    auto *button = about.findChild<QPushButton *>(QStringLiteral("cGoTo"));
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseClick(button, Qt::LeftButton);
    const QString address = QString::fromUtf8(publisher::address);
    QCOMPARE(browser.opened, QStringList({address, address}));
    QVERIFY(about.isVisible());
}

void TestWindows::helpShowsItsFile()
{
    writeHelp("Caf\xE9\n\n" + QByteArray("word ").repeated(1000));
    frmHelp help(&m_owner);
    help.Form_Load(m_folder.path());
    QCOMPARE(help.windowTitle(), QStringLiteral("QOR Help"));
    QCOMPARE(help.windowType(), Qt::Tool);
    QCOMPARE(help.minimumSize(), help.maximumSize());
    QCOMPARE(help.centralWidget()->objectName(), QStringLiteral("txtHelp"));
    QStringList commands;
    for (const QAction *action : help.menuBar()->actions())
        commands += action->objectName() + u':' + action->text();
    QCOMPARE(commands, QStringList({QStringLiteral("mnuExit:Exit"), QStringLiteral("mnuPrint:Print")}));
    QVERIFY(textOf(&help)->toPlainText().startsWith(QStringLiteral("Café\n\nword word")));
    QVERIFY(!textOf(&help)->horizontalScrollBar()->maximum());
}

void TestWindows::helpIsReadWithTheKeyboard()
{
    writeHelp(QByteArray("a line\n").repeated(200));
    frmHelp help(&m_owner);
    help.Form_Load(m_folder.path());
    help.show();
    QTextEdit *text = textOf(&help);
    const QString before = text->toPlainText();
    QTest::keyClick(text, Qt::Key_PageDown);
    QVERIFY(text->verticalScrollBar()->value() > 0);
    QTest::keyClick(text, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(text, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(text->textCursor().selectedText(), QStringLiteral("a line\u2029"));
    QTest::keyClicks(text, QStringLiteral("xyz"));
    QTest::keyClick(text, Qt::Key_Delete);
    QCOMPARE(text->toPlainText(), before);
}

void TestWindows::helpWithoutAFile_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("no file") << false;
    QTest::newRow("a folder of that name") << true;
}

void TestWindows::helpWithoutAFile()
{
    QFETCH(bool, isFolder);
    const QTemporaryDir folder;
    if (isFolder)
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("help.txt")));
    const Answer ok(QMessageBox::Ok);
    frmHelp help(&m_owner);
    help.Form_Load(folder.path());
    QCOMPARE(ok.shown, 1);
    QCOMPARE(ok.text, QStringLiteral("Help file missing"));
    QCOMPARE(ok.title, QApplication::applicationDisplayName());
    QCOMPARE(ok.buttons, QMessageBox::Ok);
    help.show();
    QVERIFY(help.isVisible() && textOf(&help)->toPlainText().isEmpty());
}

void TestWindows::hugeHelpOpensAtOnce()
{
    writeHelp(QByteArray("word ").repeated(1'000'000)); // one line
    QElapsedTimer clock;
    clock.start();
    frmHelp help(&m_owner);
    help.Form_Load(m_folder.path());
    help.show();
    QVERIFY(QTest::qWaitForWindowExposed(&help));
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
}

void TestWindows::prints_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("selection");
    QTest::addColumn<qsizetype>("pages");
    QTest::newRow("whole text on several pages") << 250 << false << qsizetype(4);
    QTest::newRow("selection only") << 250 << true << qsizetype(1);
}

void TestWindows::prints()
{
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        QSKIP("pdftotext is not installed (poppler-utils)");
    QFETCH(int, lines);
    QFETCH(bool, selection);
    QFETCH(qsizetype, pages);
    QByteArray text;
    for (int i = 1; i <= lines; ++i)
        text += "line" + QByteArray::number(i) + " caf\xC3\xA9\n";
    writeHelp(text);
    frmHelp help(&m_owner);
    help.Form_Load(m_folder.path());
    help.show();
    if (selection) {
        QTest::keyClick(textOf(&help), Qt::Key_Down);
        QTest::keyClick(textOf(&help), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(textOf(&help), Qt::Key_Down, Qt::ShiftModifier);
    }
    const QString pdf = m_folder.filePath(QStringLiteral("printed.pdf"));
    QFile::remove(pdf);
    const PrinterChoice choice(pdf);
    choose(&help, "mnuPrint");
    QVERIFY(choice.shown);
    QCOMPARE(choice.offersSelection, selection);
    QVERIFY(!choice.offersPages);
    const QStringList expected =
        QString::fromUtf8(selection ? "line2 café line3 café" : text).simplified().split(u' ');
    QCOMPARE(printedWords(pdf), expected);
    QCOMPARE(runOn(pdf, QStringLiteral("pdftotext"), {}).count(u'\f'), pages);
}

void TestWindows::failedPrintingIsQuiet()
{
    writeHelp("one\n");
    frmHelp help(&m_owner);
    help.Form_Load(m_folder.path());
    help.show();
    const QString inside = QDir::current().filePath(QStringLiteral("print.pdf")); // what the dialog proposes
    for (const QString &file : {QString(), QStringLiteral("/dev/full")}) {
        Answer box(QMessageBox::Ok);
        const PrinterChoice choice(file);
        choose(&help, "mnuPrint");
        QVERIFY(choice.shown);
        QCOMPARE(box.shown, 0);
        QVERIFY(help.isVisible());
        QVERIFY(!QFile::exists(inside));
    }
}

void TestWindows::oneWindowOfEach()
{
    MainWindow w;
    const Answer ok(QMessageBox::Ok); // there is no help text beside a test
    int calls = 0;
    const auto all = [&](const char *name) {
        return w.window.findChildren<QWidget *>(QString::fromLatin1(name));
    };
    for (const auto &[command, name] : {std::pair("mnuHelp", "frmHelp"), std::pair("mnuAbout", "frmAbout")}) {
        choose(&w.window, command);
        choose(&w.window, command);
        QCOMPARE(all(name).size(), 1);
        QPointer<QWidget> window = all(name).first();
        QVERIFY(window->isVisible() && !window->isModal());
        QTRY_COMPARE(QApplication::activeWindow(), window.data());
        w.press(++calls); // the main window stays usable
        QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: %1").arg(calls));
        window->close();
        QTRY_VERIFY(!window);
        choose(&w.window, command);
        QCOMPARE(all(name).size(), 1);
    }
}

void TestWindows::closingTheMainWindowClosesAll()
{
    MainWindow w;
    const Answer ok(QMessageBox::Ok);
    choose(&w.window, "mnuHelp");
    choose(&w.window, "mnuAbout");
    const QPointer<QWidget> help = w.find<QWidget>(QStringLiteral("frmHelp"));
    const QPointer<QWidget> about = w.find<QWidget>(QStringLiteral("frmAbout"));
    bool closedFirst = false;
    QObject::connect(&w.window, &frmMain::unloading, &w.window,
                     [&] { closedFirst = !help->isVisible() && !about->isVisible(); });
    w.window.close();
    QVERIFY(closedFirst);
    QTRY_VERIFY(!help && !about);
}

QTEST_MAIN(TestWindows)
#include "tst_windows.moc"
