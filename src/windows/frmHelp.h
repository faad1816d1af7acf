#pragma once

#include <QMainWindow>

class QAction;
class QPrinter;
class QTextEdit;

/// Shows the help text, and prints it. It closes itself for good: each showing is a window of its own, which
/// reads the text afresh.
class frmHelp : public QMainWindow
{
    Q_OBJECT

public:
    /// Stays above the window `owner`, which stays usable. Reads `help.txt` in `folder`; where there is none
    /// to read it says so in a message box and is empty.
    frmHelp(QWidget *owner, const QString &folder);

private:
    void buildControls();
    void Form_Load(const QString &folder);
    QAction *buildCommand(const char *name, const char *caption);
    void showText(const QString &text);
    void mnuExit_Click();
    void mnuPrint_Click();
    void SelPrint(QPrinter *printer) const;

    QTextEdit *txtHelp = nullptr;
};
