#pragma once

#include <memory>

class QPrinter;
class QWidget;

namespace windows {

/// Asks the user for a printer, in the desktop's own dialog.
class CommonDialog
{
public:
    enum Flag {
        PrintSelection = 1, // offer to print the selection
        NoPageNumbers = 8,  // no fields for a range of pages
        ReturnDC = 256,     // make the printer ready for `hDC`
    };

    CommonDialog();
    ~CommonDialog();

    /// Shows the dialog and waits for the answer. A cancel throws an Error if `CancelError` is true.
    void ShowPrinter(QWidget *owner);
    /// The printer that was chosen last, set up as it was asked for; null when none was or `ReturnDC` was not
    /// among the flags.
    QPrinter *hDC() const;

    bool CancelError = false;
    int Flags = 0; // a sum of Flag

private:
    std::unique_ptr<QPrinter> m_printer;
};

} // namespace windows
