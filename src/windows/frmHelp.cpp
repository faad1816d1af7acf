#include "frmHelp.h"

#include "design_table.h"
#include "error.h"
#include "message_box.h"
#include "text_file.h"
#include "tool_window.h"

#include <QAction>
#include <QDir>
#include <QMenuBar>
#include <QPrinter>
#include <QTextDocumentFragment>
#include <QTextEdit>

namespace {

// The client area, in twips.
constexpr int clientWidth = 8160;
constexpr int clientHeight = 7245;

} // namespace

frmHelp::frmHelp(QWidget *owner)
    : QMainWindow(owner)
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("QOR Help"));
    controls::makeToolWindow(this);
    buildControls();
}

void frmHelp::buildControls()
{
    menuBar()->setNativeMenuBar(false);
    connect(buildCommand("mnuExit", "Exit"), &QAction::triggered, this, &frmHelp::mnuExit_Click);
    connect(buildCommand("mnuPrint", "Print"), &QAction::triggered, this, &frmHelp::mnuPrint_Click);

    txtHelp = new QTextEdit(this);
    txtHelp->setObjectName(QStringLiteral("txtHelp"));
    txtHelp->setAccessibleName(QStringLiteral("Help text"));
    txtHelp->setAcceptRichText(false);
    txtHelp->setReadOnly(true);
    txtHelp->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtHelp->setTabChangesFocus(true);
    txtHelp->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    txtHelp->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtHelp->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setCentralWidget(txtHelp);
    txtHelp->setFocus();

    const double dpi = logicalDpiX();
    const QSize design(controls::pixels(clientWidth, dpi),
                       controls::pixels(clientHeight, dpi) + menuBar()->sizeHint().height());
    setFixedSize(design.boundedTo(controls::roomFor(this)));
}

QAction *frmHelp::buildCommand(const char *name, const char *caption)
{
    QAction *command = menuBar()->addAction(QString::fromLatin1(caption));
    command->setObjectName(QString::fromLatin1(name));
    command->setMenuRole(QAction::NoRole);
    return command;
}

void frmHelp::Form_Load(const QString &folder)
{
    if (const auto text = files::readTextFile(folder + QDir::separator() + QStringLiteral("help.txt")))
        txtHelp->setPlainText(*text);
    else
        controls::notice(parentWidget(), QStringLiteral("Help file missing"));
}

void frmHelp::mnuExit_Click()
{
    close();
}

void frmHelp::mnuPrint_Click()
try {
    using windows::CommonDialog;
    CD1.CancelError = true;
    CD1.Flags = CommonDialog::ReturnDC | CommonDialog::NoPageNumbers;
    if (txtHelp->textCursor().hasSelection())
        CD1.Flags |= CommonDialog::PrintSelection;
    CD1.ShowPrinter(this);
    SelPrint(CD1.hDC());
} catch (const files::Error &) {
    // Cancelled: nothing is printed and nothing is said.
}

/// Prints the selected text, or the whole one when nothing is selected. A printer that fails prints nothing.
void frmHelp::SelPrint(QPrinter *printer) const
{
    const QTextCursor selected = txtHelp->textCursor();
    QTextDocument pages;
    pages.setDefaultFont(txtHelp->font());
    pages.setPlainText(selected.hasSelection() ? selected.selection().toPlainText() : txtHelp->toPlainText());
    printer->setDocName(windowTitle());
    pages.print(printer);
}
