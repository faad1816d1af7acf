// The windows as they are, compared with files, and those beside the main window at work; and the end.

#include "support/room.h"

/// What changes in the look of a control when it is pressed, focused, and enabled or not; with the colours at
/// its corners and inside where the program itself paints it.
static QString look(QWidget *control)
{
    const QRegularExpression own("^(cButt|tDemo|RTB)");
    const bool isOwn = control->objectName().contains(own) || control->property("frame") == false;
    const QPoint end = control->rect().bottomRight();
    QImage before;
    QString seen;
    control->window()->setAttribute(Qt::WA_KeyboardFocusChange); // as Tab does
    for (const QString state : {"at rest", "pressed", "focused", "disabled"}) {
        control->setProperty("down", state == "pressed"); // of a button
        state == "focused" ? control->setFocus() : control->clearFocus();
        control->setEnabled(state != "disabled");
        const QImage picture = control->grab().toImage();
        if (picture == before)
            continue;
        seen += "; " + state;
        for (const QPoint place : {QPoint(0, 0), QPoint(1, 1), end - QPoint(1, 1), end})
            seen += isOwn ? ' ' + picture.pixelColor(place).name() : QString();
        before = before.isNull() ? picture : before;
    }
    control->setEnabled(true);
    return seen;
}

/// What a control holds: its entries, its range, and how its last letter looks.
static QString content(const QWidget *control)
{
    QStringList found{Room::content(
        control, {"text", "plainText", "title", "currentText", "minimum", "maximum", "singleStep", "pageStep",
                  "checked", "default", "lineWrapMode", "textInteractionFlags", "horizontalScrollBarPolicy",
                  "verticalScrollBarPolicy", "focusPolicy", "alignment", "textFormat", "autoDefault"})};
    const auto *combo = qobject_cast<const QComboBox *>(control);
    for (int i = 0; combo && i < combo->count(); ++i)
        found += combo->itemText(i);
    const auto *display = qobject_cast<const QTextEdit *>(control);
    const QTextBlock last = display ? display->document()->lastBlock() : QTextBlock();
    for (auto part = last.begin(); !part.atEnd(); ++part) {
        const QTextCharFormat letter = part.fragment().charFormat();
        QTextStream(&found.emplaceBack())
            << part.fragment().text() << ' ' << letter.foreground().color().name() << ' '
            << letter.fontPointSize() << " pt, " << letter.fontStretch() << " % wide, outline "
            << letter.textOutline().widthF() << ' ' << letter.textOutline().color().name() << ", wrap "
            << display->wordWrapMode() << ", aligned " << last.blockFormat().alignment().toInt();
    }
    return found.join(' ').simplified();
}

/// The colours, enabled and disabled, and the menus, then a line for each control, the tab stops in their
/// order. Neighbours of an array that differ in their number and place alone share one.
static QStringList facts(QWidget *window)
{
    const auto *main = qobject_cast<QMainWindow *>(window);
    const QWidget *client = main ? main->centralWidget() : window;
    const auto flags = window->windowFlags() &
                       (Qt::WindowType_Mask | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    const QPoint off = window->frameGeometry().center() - window->screen()->geometry().center();
    // BINGO and boxes have no size of their own.
    const int twips = window->objectName() == "frmBingo" || window->inherits("QMessageBox") ? 0 : 15;
    QString all, before;
    QTextStream line(&all);
    line << window->windowTitle() << ", " << window->accessibleName() << ", " << twips * client->width()
         << " x " << twips * client->height()
         << (window->minimumSize() == window->maximumSize() ? " fixed" : "")
         << (off.manhattanLength() <= 2 ? " centred" : "") << ", flags " << Qt::hex << int(flags) << Qt::dec
         << "\nColours";
    for (int role = 0; role <= QPalette::PlaceholderText; ++role)
        for (const auto group : {QPalette::Active, QPalette::Disabled})
            line << ' ' << window->palette().color(group, QPalette::ColorRole(role)).name();
    for (const auto *action : window->findChildren<QAction *>(QRegularExpression("^mnu")))
        line << '\n'
             << action->associatedObjects().constFirst()->objectName() << " > " << action->objectName()
             << ": " << Room::content(action);
    for (auto *control = window->nextInFocusChain(); control != window;
         control = control->nextInFocusChain()) {
        const bool isPart = control->objectName().contains(QRegularExpression("^(qt_scroll|frm|client|$)")) &&
                            !control->inherits("QPushButton");
        if (!control->isVisible() || control->window() != window || isPart)
            continue;
        auto *reader = QAccessible::queryAccessibleInterface(control);
        const QString number = control->objectName().section('(', 1).remove(')');
        QString now;
        QTextStream fact(&now);
        fact << '\n'
             << control->objectName().section('(', 0, 0) << ": "
             << QMetaEnum::fromType<QAccessible::Role>().valueToKey(reader->role())
             << (number.isEmpty() ? " \"" + reader->text(QAccessible::Name).simplified() + '"' : "") << " ["
             << content(control).remove(number) << "] " << control->font().pointSizeF()
             << (control->font().bold() ? " pt bold" : " pt");
        if (!control->inherits("QLabel") && control != client)
            fact << ", " << twips * control->width() << " x " << twips * control->height();
        fact << look(control) << "; y " << (control == client ? 0 : twips * control->y()) << ", x";
        line << (now == before ? "" : now) << ' ' << number << (number.isEmpty() ? "" : ":")
             << twips * control->x();
        before = now;
    }
    return all.split('\n');
}

class TestWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windows()
    {
        const std::pair<QString, QString> scripts[]{
            {"frmMain", "enter 33, enter 7, click chkAutoCall, seconds 1"},
            {"frmBingo", "click cBingo"},
            {"frmHelp", "choose mnuHelp"},
            {"frmAbout", "choose mnuAbout, choose mnuAbout"},
            {"frmVoices", "choose mnuSpeak, voices, key Down"},
            {"question", "enter 7, click cButt(7)"},
            {"notice", "choose mnuSpeak, click cSave"},
            {"error", "silence, click chkMakeVoiceCall, enter 7, failure"},
        };
        for (const auto &[name, script] : scripts) {
            Room room;
            room.window->move(0, 0); // what is centred is so on the screen
            QStringList seen;
            room.onBox = [&](QWidget *box) { seen = facts(box); };
            room.play(script);
            room.look();
            if (seen.isEmpty())
                seen = facts(name == "frmMain" ? room.window.get() : room.find(name));
            compare(seen, QFINDTESTDATA("expected/") + name + ".txt");
        }
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
        compare(seen, QFINDTESTDATA("expected/flashes.txt"));
        bingo->resize(940, 600);
        QVERIFY(display->size() == bingo->size() && display->document()->idealWidth() <= 940);
        room.find<QPushButton>("cBingo")->click(); // covers it again
        QCOMPARE(bingo->geometry(), room.window->frameGeometry());
        QCOMPARE(bingo->focusWidget()->objectName(), "Text1");
    }

    /// All, a selection, and cancelled; and a help that cannot be edited, or is missing.
    void help()
    {
        QFile::remove("help.txt");
        Room room;
        room.play("choose mnuHelp");
        QCOMPARE(room.look()["boxes"], "Vellomir: Help file missing");
        std::ofstream("help.txt") << "one\ntwo\nthr\xE9\xE9\nfour";
        QString seen;
        room.onBox = [&](const QWidget *box) {
            seen += Room::content(box->findChild<QWidget *>("printSelection"), {"checked"});
            auto *printers = box->findChild<QComboBox *>("printers");
            printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
            box->findChild<QLineEdit *>("filename")->setText(QDir::current().filePath("help.pdf"));
        };
        for (const QString script :
             {"close frmHelp, choose mnuHelp, choose mnuHelp, answers Return, type xyz, key Del",
              "key Down, key Shift+Down, key Shift+Down", "answers Escape"}) {
            room.play(script + ", choose mnuPrint");
            QProcess::execute("pdftotext", {"help.pdf", "printed.txt"});
            seen += ' ' + linesOf("printed.txt").join(' ').simplified() + "; ";
            QFile::remove("help.pdf");
            QFile::remove("printed.txt");
        }
        QCOMPARE(seen, " one two thréé four 1; true two thréé 1; true ; ");
    }
};

TEST_IN_ROOM(TestWindows)
#include "tst_windows.moc"
