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
    room.play("choose mnuPrint");
    QProcess tool;
    tool.start("pdftotext", {file, "-"});
    tool.waitForFinished();
    for (const QString &page : QString::fromUtf8(tool.readAll()).split('\f', Qt::SkipEmptyParts))
        said += ' ' + page.simplified().section(' ', 0, -2);
    return said;
}

/// What changes in the look of a control when it is pressed, focused, and enabled or not; with the colours at
/// its corners and inside where the program itself paints it.
QString look(QWidget *control)
{
    const bool isOwn = QRegularExpression("::(Color|TextBox|RichText)")
                           .match(control->metaObject()->className())
                           .hasMatch() &&
                       !control->property("frame").toBool();
    const QPoint end = control->rect().bottomRight();
    QImage atRest;
    QString seen;
    const auto see = [&](const char *state) {
        const QImage picture = control->grab().toImage();
        seen += picture == atRest ? "" : QString("; ") + state;
        for (const QPoint place : {QPoint(0, 0), QPoint(1, 1), end - QPoint(1, 1), end})
            seen += isOwn && picture != atRest ? ' ' + picture.pixelColor(place).name() : QString();
        atRest = atRest.isNull() ? picture : atRest;
    };
    control->clearFocus();
    see("at rest");
    if (control->inherits("QAbstractButton")) {
        QTest::mousePress(control, Qt::LeftButton);
        see("pressed");
        QTest::mouseRelease(control, Qt::LeftButton, {}, {-9, -9});
    }
    control->setFocus();
    control->window()->setAttribute(Qt::WA_KeyboardFocusChange); // as Tab does
    see("focused");
    control->clearFocus();
    control->setEnabled(!control->isEnabled());
    see(control->isEnabled() ? "enabled" : "disabled");
    control->setEnabled(!control->isEnabled());
    return seen;
}

/// What a control holds: its entries, its range, and how its last letter looks.
QString content(const QWidget *control)
{
    QStringList found;
    for (const char *name :
         {"text", "plainText", "title", "currentText", "minimum", "maximum", "singleStep", "pageStep",
          "checked", "lineWrapMode", "horizontalScrollBarPolicy", "verticalScrollBarPolicy"})
        found += control->property(name).toString().remove("false");
    const auto *combo = qobject_cast<const QComboBox *>(control);
    for (int i = 0; combo && i < combo->count(); ++i)
        found += combo->itemText(i);
    if (const auto *display = qobject_cast<const QTextEdit *>(control)) {
        QTextCursor end(display->document());
        end.movePosition(QTextCursor::End);
        found += end.charFormat().foreground().color().name();
        found += QString("%1 pt, outline %2 %5, wrap %3, aligned %4")
                     .arg(end.charFormat().fontPointSize())
                     .arg(end.charFormat().textOutline().widthF())
                     .arg(int(display->wordWrapMode()))
                     .arg(int(end.blockFormat().alignment()))
                     .arg(end.charFormat().textOutline().color().name());
    }
    return found.join(' ').simplified();
}

/// The colours, enabled and disabled, and the menus, then a line for each control, the tab stops in their
/// order. Neighbours of an array that differ in their number and place alone share one.
QStringList facts(QWidget *window)
{
    const auto *main = qobject_cast<QMainWindow *>(window);
    const QWidget *client = main ? main->centralWidget() : window;
    const auto flags = window->windowFlags() &
                       (Qt::WindowType_Mask | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    const bool hasSize =
        !(window->windowFlags() & Qt::FramelessWindowHint) && !window->inherits("QMessageBox");
    const auto twips = [&](int pixels) { // BINGO and boxes have no size of their own
        return hasSize ? qRound(pixels * 1440.0 / window->logicalDpiX()) : 0;
    };
    QString all, before;
    QTextStream line(&all);
    line << window->windowTitle() << ", " << window->accessibleName() << ", " << twips(client->width())
         << " x " << twips(client->height()) << ", flags " << Qt::hex << int(flags) << Qt::dec << "\nColours";
    for (int role = 0; role <= QPalette::PlaceholderText; ++role) {
        for (const auto group : {QPalette::Active, QPalette::Disabled})
            line << ' ' << window->palette().color(group, QPalette::ColorRole(role)).name();
    }
    for (const auto *action : window->findChildren<QAction *>(QRegularExpression("^mnu")))
        line << '\n'
             << action->associatedObjects().constFirst()->objectName() << " > " << action->objectName()
             << ": " << action->text() << (action->isChecked() ? ", checked" : "");
    for (auto *control = window->nextInFocusChain(); control != window;
         control = control->nextInFocusChain()) {
        const bool isPart = control->objectName().contains(QRegularExpression("^(qt_scroll|frm|client|$)")) &&
                            !control->inherits("QPushButton");
        if (!control->isVisible() || control->window() != window || isPart)
            continue;
        auto *reader = QAccessible::queryAccessibleInterface(control);
        const Step called("is " + control->objectName());
        const QString number = called.index ? QString::number(called.index) : "", held = content(control);
        QString now;
        QTextStream fact(&now);
        fact << '\n'
             << called.array << ": " << QMetaEnum::fromType<QAccessible::Role>().valueToKey(reader->role());
        fact << (number.isEmpty() ? " \"" + reader->text(QAccessible::Name).simplified() + '"' : "") << " ["
             << (held == number ? "" : held) << "] ";
        fact << control->font().pointSizeF() << (control->font().bold() ? " pt bold" : " pt");
        if (!control->inherits("QLabel") && control != client)
            fact << ", " << twips(control->width()) << " x " << twips(control->height());
        fact << ", " << QMetaEnum::fromType<Qt::FocusPolicy>().valueToKey(control->focusPolicy())
             << look(control);
        fact << "; y " << (control == client ? 0 : twips(control->y())) << ", x";
        line << (now == before ? "" : now) << ' ' << number << (number.isEmpty() ? "" : ":")
             << twips(control->x());
        before = now;
    }
    return all.split('\n');
}

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void browse(const QUrl &address) { m_browsed += address.host(); }

private Q_SLOTS:
    void windows_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("frmMain") << "enter 33, enter 7, click chkAutoCall, seconds 1";
        QTest::newRow("frmBingo") << "click cBingo";
        QTest::newRow("frmHelp") << "choose mnuHelp";
        QTest::newRow("frmAbout") << "choose mnuAbout";
        QTest::newRow("frmVoices") << "choose mnuSpeak, choose List1 0";
        QTest::newRow("question") << "enter 7, click cButt(7)";
        QTest::newRow("notice") << "choose mnuSpeak, click cSave";
        QTest::newRow("error") << "click chkMakeVoiceCall, service waits, enter 7, service fails";
    }
    void windows()
    {
        QFETCH(QString, script);
        Room room;
        QStringList seen;
        room.onBox = [&](QWidget *box) { seen = facts(box); };
        room.play(script);
        room.look();
        const QString name = QTest::currentDataTag();
        if (seen.isEmpty())
            seen = facts(name == "frmMain" ? room.window : room.find(name));
        QFile file(EXPECTED + name + ".txt");
        if (qEnvironmentVariableIsSet("WRITE"))
            writeFile(file.fileName(), (seen.join('\n') + '\n').toUtf8());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(seen, QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts));
    }

    /// The word at every tick: its size, the colour of the I, and whether the blank line stays above it.
    void bingo()
    {
        Room room;
        room.play("enter 9, click cBingo");
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
        room.find<QPushButton>("cBingo")->click(); // fills it again
        QVERIFY(bingo->windowFlags() & Qt::FramelessWindowHint && letter(2).height() == height);
        QCOMPARE(bingo->geometry(), room.window->frameGeometry());
        QCOMPARE(bingo->focusWidget()->objectName(), "Text1");
        room.play("enter x , click frmBingo");
        QVERIFY(QTest::qWaitFor([&] { return !bingo; }));
    }

    void help()
    {
        writeHelp("Caf\xE9\n\n" + QByteArray("word ").repeated(1000) + QByteArray(200, '\n'));
        Room room;
        room.play("choose mnuHelp, choose mnuHelp");
        auto *text = room.find<QTextEdit>("txtHelp");
        const QString before = text->toPlainText();
        QVERIFY(before.startsWith("Café\n\nword word") && !text->horizontalScrollBar()->maximum());
        room.play("key PgDown");
        QVERIFY(text->verticalScrollBar()->value() > 0);
        room.play("key Ctrl+Home, key Shift+Down");
        QCOMPARE(text->textCursor().selectedText(), "Café\u2029");
        room.play("type xyz, key Del");
        QCOMPARE(text->toPlainText(), before);
        writeHelp(QByteArray(256 * 1024, 'w'));
        room.find("frmHelp")->close();
        const std::clock_t start = std::clock();
        room.play("choose mnuHelp");
        QCOMPARE(room.look()["windows"], "frmHelp* frmMain");
        QVERIFY(std::clock() - start < CLOCKS_PER_SEC / 2); // a long word stops nothing
        room.find("frmHelp")->close();
        QFile::remove(QCoreApplication::applicationDirPath() + "/help.txt");
        room.play("choose mnuHelp");
        Facts seen = room.look();
        QCOMPARE(seen["boxes"] + seen["windows"],
                 "Vellomir: Help file missing (NoIcon: OK!)frmHelp* frmMain");
    }

    /// All, a selection, cancelled, and a printer that fails.
    void prints()
    {
        QString words;
        for (int i = 1; i <= 250; ++i)
            words += QString(" line%1 café").arg(i);
        writeHelp(QString(words).replace("é ", "é\n").toUtf8());
        Room room;
        room.play("choose mnuHelp");
        const QString folder = QDir::currentPath() + '/';
        QCOMPARE(print(room, folder + "all.pdf"), "all" + words);
        room.play("key Down, key Shift+Down, key Shift+Down");
        QCOMPARE(print(room, folder + "part.pdf"), "selection line2 café line3 café");
        QCOMPARE(print(room, "") + print(room, "/dev/full"), "selectionselection");
        QVERIFY(room.look()["boxes"].isEmpty());
        QVERIFY(!QFile::exists("print.pdf") && room.find("frmHelp")->isActiveWindow());
    }

    void about()
    {
        QDesktopServices::setUrlHandler("https", this, "browse");
        Room room;
        room.window->move(0, 0);
        room.play("choose mnuAbout, choose mnuAbout, click cGoTo");
        const QPointer<QWidget> about = room.find("frmAbout");
        const QPoint off = about->frameGeometry().center() - about->screen()->geometry().center();
        QVERIFY(off.manhattanLength() <= 2 && about->minimumSize() == about->maximumSize());
        QCOMPARE(room.look()["windows"], "frmAbout* frmMain");
        QCOMPARE(m_browsed.size(), 1);
        room.play("click cOK");
        QVERIFY(QTest::qWaitFor([&] { return !about; }));
        QDesktopServices::unsetUrlHandler("https");
    }

    /// Each way to the end closes the windows first, and saves the settings.
    void ends()
    {
        for (const QString way : {"close", "exit", "session"}) {
            bool isOver = way == "session";
            Room room;
            room.play("choose cboSec 18, choose mnuAbout, choose mnuSpeak");
            connect(qobject_cast<frmMain *>(room.window.data()), &frmMain::unloading, this,
                    [&, about = QPointer(room.find("frmAbout"))] {
                        isOver = way == "exit" || !about || !about->isVisible();
                    });
            if (way == "session")
                Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(room));
            else
                way == "exit" ? room.play("choose mnuExit") : room.end();
            QVERIFY(isOver);
            QFile file(modMain::SettingsPath);
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(way));
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
