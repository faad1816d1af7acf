#pragma once

#include <QMainWindow>
#include <QTextEdit>

class QPrinter;

/// Shows the help text, and prints it.
class frmHelp : public QMainWindow
{
    Q_OBJECT

public:
    /// Stays above the window `owner`, which stays usable.
    explicit frmHelp(QWidget *owner);

    /// Shows the text of `help.txt` beside the program. Where there is none it says so in a message box.
    void Form_Load();

private:
    void showText(const QString &text);
    void mnuExit_Click() { close(); }
    void mnuPrint_Click();
    void SelPrint(QPrinter *printer) const;

    QTextEdit *txtHelp = new QTextEdit(this);
};
