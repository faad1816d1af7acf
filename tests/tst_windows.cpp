// The windows as they are, compared with files, and those beside the main window at work; and the end.

#include "support/room.h"

#include <QDesktopServices>
#include <QPrintDialog>

namespace {

/// Prints the help into a file, or cancels where none is given; answers what the dialog offered, and the
/// words of the printed pages without the pages' numbers.
QString print(Room &room, const QString &file)
{
    QString found;
    QTimer hand;
    hand.callOnTimeout([&] {
        auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        found = dialog->printRange() == QAbstractPrintDialog::Selection ? "selection" : "all";
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
    return found + ' ' + QString::fromUtf8(tool.readAll()).simplified();
}

/// What changes in the look of a control when it is pressed, focused, and enabled or not; with the colours at
/// its corners and inside where the program itself paints it.
QString look(QWidget *control)
{
    static const QRegularExpression own("::(Color|TextBox|RichText)");
    const bool isOwn =
        own.match(control->metaObject()->className()).hasMatch() && !control->property("frame").toBool();
    const QPoint end = control->rect().bottomRight();
    QImage before;
    QString seen;
    const auto see = [&](const char *state) {
        const QImage picture = control->grab().toImage();
        if (picture == before)
            return;
        seen += QString("; ") + state;
        for (const QPoint place : {QPoint(0, 0), QPoint(1, 1), end - QPoint(1, 1), end})
            seen += isOwn ? ' ' + picture.pixelColor(place).name() : QString();
        before = before.isNull() ? picture : before;
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
    control->setEnabled(false);
    see("disabled");
    control->setEnabled(true);
    return seen;
}

/// What a control holds: its entries, its range, and how its last letter looks.
QString content(const QWidget *control)
{
    QStringList found{Room::content(control, {"text", "plainText", "title", "currentText", "minimum",
                                              "maximum", "singleStep", "pageStep", "checked", "default",
                                              "lineWrapMode", "textInteractionFlags",
                                              "horizontalScrollBarPolicy", "verticalScrollBarPolicy"})};
    const auto *combo = qobject_cast<const QComboBox *>(control);
    for (int i = 0; combo && i < combo->count(); ++i)
        found += combo->itemText(i);
    if (const auto *display = qobject_cast<const QTextEdit *>(control)) {
        QTextCursor end(display->document());
        end.movePosition(QTextCursor::End);
        const QTextCharFormat letter = end.charFormat();
        QTextStream(&found.emplaceBack())
            << letter.foreground().color().name() << ' ' << letter.fontPointSize() << " pt, "
            << letter.fontStretch() << " % wide, outline " << letter.textOutline().widthF() << ' '
            << letter.textOutline().color().name() << ", wrap " << display->wordWrapMode() << ", aligned "
            << end.blockFormat().alignment().toInt();
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
    const QPoint off = window->frameGeometry().center() - window->screen()->geometry().center();
    const bool hasSize = client->objectName() != "frmBingo" && !window->inherits("QMessageBox");
    const double scale =
        hasSize ? 1440.0 / window->logicalDpiX() : 0; // BINGO and boxes have none of their own
    const auto twips = [&](int pixels) { return qRound(pixels * scale); };
    QString all, before;
    QTextStream line(&all);
    line << window->windowTitle() << ", " << window->accessibleName() << ", " << twips(client->width())
         << " x " << twips(client->height())
         << (window->minimumSize() == window->maximumSize() ? " fixed" : "")
         << (off.manhattanLength() <= 2 ? " centred" : "") << ", flags " << Qt::hex << int(flags) << Qt::dec
         << "\nColours";
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
        const QString number = control->objectName().section('(', 1).remove(')'), held = content(control);
        QString now;
        QTextStream fact(&now);
        fact << '\n'
             << control->objectName().section('(', 0, 0) << ": "
             << QMetaEnum::fromType<QAccessible::Role>().valueToKey(reader->role())
             << (number.isEmpty() ? " \"" + reader->text(QAccessible::Name).simplified() + '"' : "") << " ["
             << (held == number ? "" : held) << "] " << control->font().pointSizeF()
             << (control->font().bold() ? " pt bold" : " pt");
        if (!control->inherits("QLabel") && control != client)
            fact << ", " << twips(control->width()) << " x " << twips(control->height());
        fact << ", " << QMetaEnum::fromType<Qt::FocusPolicy>().valueToKey(control->focusPolicy())
             << look(control) << "; y " << (control == client ? 0 : twips(control->y())) << ", x";
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
    void browse(const QUrl &address) { m_browsed += address.toString(); }

private Q_SLOTS:
    void windows_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("frmMain") << "enter 33, enter 7, click chkAutoCall, seconds 1";
        QTest::newRow("frmBingo") << "click cBingo";
        QTest::newRow("frmHelp") << "choose mnuHelp";
        QTest::newRow("frmAbout") << "choose mnuAbout, choose mnuAbout, click cGoTo";
        QTest::newRow("frmVoices") << "choose mnuSpeak, voices, key Down";
        QTest::newRow("question") << "enter 7, click cButt(7)";
        QTest::newRow("notice") << "choose mnuSpeak, click cSave";
        QTest::newRow("error") << "silence, click chkMakeVoiceCall, enter 7, failure";
    }
    void windows()
    {
        QFETCH(QString, script);
        const QString name = QTest::currentDataTag();
        Room room;
        QDesktopServices::setUrlHandler("https", this, "browse");
        room.window->move(0, 0); // what is centred is so on the screen
        QStringList seen;
        room.onBox = [&](QWidget *box) { seen = facts(box); };
        room.play(script);
        room.look();
        if (seen.isEmpty())
            seen = facts(name == "frmMain" ? room.window : room.find(name)) + std::exchange(m_browsed, {});
        compare(seen, EXPECTED + name + ".txt");
        QDesktopServices::unsetUrlHandler("https");
    }

    /// The word at every tick, and as large as the window it covers.
    void bingo()
    {
        Room room;
        room.play("enter 9, click cBingo");
        auto *bingo = room.find("frmBingo");
        auto *display = bingo->findChild<QTextEdit *>("RTB1");
        auto *timer = bingo->findChild<QTimer *>("Timer1");
        QStringList seen;
        for (int i = 0; i <= 16; ++i, room.tick(timer)) {
            const int above = display->cursorRect(QTextCursor(display->document())).height();
            seen += QString("%1 ms, %2 px above, ").arg(timer->interval()).arg(above) + content(display);
        }
        compare(seen, EXPECTED "flashes.txt");
        bingo->resize(940, 600);
        QVERIFY(display->size() == bingo->size() && display->document()->idealWidth() <= 940);
        room.find<QPushButton>("cBingo")->click(); // covers it again
        QCOMPARE(bingo->geometry(), room.window->frameGeometry());
        QCOMPARE(bingo->focusWidget()->objectName(), "Text1");
    }

    void help()
    {
        writeFile("help.txt", "Caf\xE9\n\n" + QByteArray("word ").repeated(1000) + QByteArray(200, '\n'));
        Room room;
        room.play("choose mnuHelp, choose mnuHelp");
        auto *text = room.find<QTextEdit>("txtHelp");
        const QString before = text->toPlainText();
        QVERIFY(before.startsWith("Café\n\nword word") && !text->horizontalScrollBar()->maximum());
        room.play("key Ctrl+Home, key Shift+Down, type xyz, key Del");
        QCOMPARE(text->textCursor().selectedText(), "Café\u2029");
        QCOMPARE(text->toPlainText(), before);
        QFile::remove("help.txt");
        room.play("close frmHelp, choose mnuHelp");
        QCOMPARE(room.look()["boxes"], "Vellomir: Help file missing");
    }

    /// All, a selection, cancelled, and a printer that fails.
    void prints()
    {
        writeFile("help.txt", "one\ntwo\nthr\xE9\xE9\nfour");
        Room room;
        room.play("choose mnuHelp");
        QCOMPARE(print(room, QDir::currentPath() + "/help.pdf"), "all one two thréé four 1");
        room.play("key Down, key Shift+Down, key Shift+Down");
        QCOMPARE(print(room, QDir::currentPath() + "/help.pdf"), "selection two thréé 1");
        QCOMPARE(print(room, "") + print(room, "/dev/full"), "selection selection ");
    }

    /// Each way to the end saves the settings, and ends the program with its windows.
    void ends()
    {
        for (const QString way : {"close", "exit", "session"}) {
            {
                Room room;
                room.play("click cboSec, key Down, key Return, choose mnuAbout, choose mnuSpeak");
                if (way == "session")
                    Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(room));
                else if (way == "exit")
                    room.play("choose mnuExit");
            }
            QFile file(modMain::SettingsPath);
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(way));
            QCOMPARE(file.readAll(), "[Options]\r\nFontSz=33\r\nAutoCallTm=11\r\n");
        }
    }

private:
    QStringList m_browsed;
};

TEST_IN_ROOM(TestWindows)
#include "tst_windows.moc"
