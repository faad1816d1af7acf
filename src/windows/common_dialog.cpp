#include "common_dialog.h"

#include "error.h"

#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>

namespace windows {

namespace {

constexpr int cancelWasSelected = 32755;

} // namespace

CommonDialog::CommonDialog() = default;
CommonDialog::~CommonDialog() = default;

void CommonDialog::ShowPrinter(QWidget *owner)
{
    m_printer.reset();
    auto printer = std::make_unique<QPrinter>();
    // Its owner may be closed while it is open, and takes it along, and this object as well.
    const QPointer dialog = new QPrintDialog(printer.get(), owner);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange, !(Flags & NoPageNumbers));
    dialog->setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    dialog->setOption(QAbstractPrintDialog::PrintSelection, Flags & PrintSelection);
    if (Flags & PrintSelection)
        dialog->setPrintRange(QAbstractPrintDialog::Selection);
    const bool chosen = dialog->exec() == QDialog::Accepted;
    const bool outlived = !dialog;
    delete dialog;
    if (outlived || (!chosen && CancelError))
        throw files::Error(cancelWasSelected, QStringLiteral("Cancel was selected."));
    if (chosen && (Flags & ReturnDC))
        m_printer = std::move(printer);
}

QPrinter *CommonDialog::hDC() const
{
    return m_printer.get();
}

} // namespace windows
