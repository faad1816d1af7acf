#include "frmHelp.h"

#include "design_table.h"
#include "menu_bar.h"
#include "message_box.h"
#include "text_file.h"
#include "tool_window.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenuBar>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QTextDocumentFragment>

// The client area, in twips.
constexpr int clientWidth = 8160;
constexpr int clientHeight = 7245;

/// Qt's own dialog shows these fields whatever its option says; that of Windows has no such children.
static void hidePageRange(const QPrintDialog *dialog)
{
    const auto *box = dialog->findChild<QWidget *>(QStringLiteral("gbPrintRange"));
    for (const char *name : {"printRange", "from", "label_3", "to", "pagesRadioButton", "pagesLineEdit"}) {
        if (auto *field = box ? box->findChild<QWidget *>(QString::fromLatin1(name)) : nullptr)
            field->hide();
    }
}

frmHelp::frmHelp(QWidget *owner)
    : QMainWindow(owner)
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("QOR Help"));
    controls::makeToolWindow(this);
    setMenuBar(new controls::MenuBar(this));
    QAction *mnuExit = menuBar()->addAction(QStringLiteral("Exit"));
    mnuExit->setObjectName(QStringLiteral("mnuExit"));
    connect(mnuExit, &QAction::triggered, this, &frmHelp::mnuExit_Click);
    QAction *mnuPrint = menuBar()->addAction(QStringLiteral("Print"));
    mnuPrint->setObjectName(QStringLiteral("mnuPrint"));
    connect(mnuPrint, &QAction::triggered, this, &frmHelp::mnuPrint_Click);
    txtHelp->setObjectName(QStringLiteral("txtHelp"));
    txtHelp->setAccessibleName(QStringLiteral("Help text"));
    txtHelp->setReadOnly(true);
    txtHelp->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtHelp->setTabChangesFocus(true);
    txtHelp->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    txtHelp->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtHelp->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setCentralWidget(txtHelp);
    txtHelp->setFocus();

    const QSize design(controls::pixels(clientWidth),
                       controls::pixels(clientHeight) + menuBar()->sizeHint().height());
    setFixedSize(design.boundedTo(controls::largestSize(this)));
}

void frmHelp::Form_Load()
{
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/help.txt");
    if (const auto text = base::readTextFile(path))
        showText(*text);
    else
        controls::notice(parentWidget(), QStringLiteral("Help file missing"));
}

void frmHelp::showText(const QString &text)
{
    // Qt's time to wrap a word grows with the square of its length, except where any letter may begin a line.
    static const QRegularExpression slowWord(QStringLiteral("(?<!\\S)\\S{2000}"));
    if (text.contains(slowWord))
        txtHelp->setWordWrapMode(QTextOption::WrapAnywhere);
    txtHelp->setPlainText(text);
}

/// The dialog returns a printer to draw on and has no page-range fields: flags 256 and 8.
void frmHelp::mnuPrint_Click()
{
    const bool offerSelection = txtHelp->textCursor().hasSelection();
    auto *dialog = new QPrintDialog(this);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog->setOption(QAbstractPrintDialog::PrintSelection, offerSelection);
    if (offerSelection)
        dialog->setPrintRange(QAbstractPrintDialog::Selection);
    hidePageRange(dialog);
    const QPointer window = this;
    const bool isChosen = dialog->exec() == QDialog::Accepted;
    if (!window) // closed, and the dialog deleted with it
        return;
    controls::showInFront(this);
    txtHelp->setFocus();
    if (isChosen)
        SelPrint(dialog->printer());
    delete dialog;
}

/// Prints the selected text, or the whole one when nothing is selected. A printer that fails prints nothing.
void frmHelp::SelPrint(QPrinter *printer) const
{
    const QTextCursor selected = txtHelp->textCursor();
    QTextDocument pages;
    pages.setDefaultFont(txtHelp->font());
    pages.setDefaultTextOption(txtHelp->document()->defaultTextOption());
    pages.setPlainText(selected.hasSelection() ? selected.selection().toPlainText() : txtHelp->toPlainText());
    printer->setDocName(windowTitle());
    pages.print(printer);
}
