#include "platform/common_dialog.h"

#include "platform/error.h"

#include <QPrintDialog>
#include <QPrinter>

namespace platform {

namespace {

constexpr int cancelWasSelected = 32755;

} // namespace

CommonDialog::CommonDialog() = default;
CommonDialog::~CommonDialog() = default;

void CommonDialog::ShowPrinter(QWidget *owner)
{
    m_printer.reset();
    auto printer = std::make_unique<QPrinter>();
    QPrintDialog dialog(printer.get(), owner);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, !(Flags & NoPageNumbers));
    dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, Flags & PrintSelection);
    if (Flags & PrintSelection)
        dialog.setPrintRange(QAbstractPrintDialog::Selection);
    const bool chosen = dialog.exec() == QDialog::Accepted;
    if (!chosen && CancelError)
        throw Error(cancelWasSelected, QStringLiteral("Cancel was selected."));
    if (chosen && (Flags & ReturnDC))
        m_printer = std::move(printer);
}

QPrinter *CommonDialog::hDC() const
{
    return m_printer.get();
}

} // namespace platform
