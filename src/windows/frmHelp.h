#pragma once

#include <QMainWindow>
#include <QTextEdit>

class QPrinter;

/// Shows the help text, and prints it.
class frmHelp : public QMainWindow
{
    Q_OBJECT

public:
    /// Shows the text of `help.txt` in `folder`. Stays above the window `owner`, which stays usable.
    frmHelp(const QString &folder, QWidget *owner);

    /// Reads the text. Where there is none to read it says so in a message box.
    void Form_Load();

private:
    void showText(const QString &text);
    void mnuExit_Click() { close(); }
    void mnuPrint_Click();
    void SelPrint(QPrinter *printer) const;

    QString m_folder;
    QTextEdit *txtHelp = new QTextEdit(this);
};
