#pragma once

#include <QWidget>

/// Names the program, its version and its publisher, and leads to the publisher's web site.
class frmAbout : public QWidget
{
    Q_OBJECT

public:
    /// Stays above the window `owner`, which stays usable.
    explicit frmAbout(QWidget *owner);
    /// Centres the window on the screen.
    void Form_Load();

private:
    void cOK_Click() { close(); }
    void cGoTo_Click();
};
