#pragma once

#include "common_dialog.h"

#include <QMainWindow>

class QAction;
class QTextEdit;

/// Shows the help text, and prints it. It closes itself for good: each showing is a window of its own, which
/// reads the text afresh.
class frmHelp : public QMainWindow
{
    Q_OBJECT

public:
    /// Stays above the window `owner`, which stays usable.
    explicit frmHelp(QWidget *owner);

    /// Reads `help.txt` in `folder`; says so when there is none to read, and is empty then.
    void Form_Load(const QString &folder);

private:
    void buildControls();
    QAction *buildCommand(const char *name, const char *caption);
    void mnuExit_Click();
    void mnuPrint_Click();
    void SelPrint(QPrinter *printer) const;

    QTextEdit *txtHelp = nullptr;
    windows::CommonDialog CD1;
};
