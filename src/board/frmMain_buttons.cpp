#include "board/frmMain.h"

#include "board/frmMain_design.h"
#include "board/numbers.h"
#include "platform/colors.h"
#include "platform/controls.h"
#include "platform/units.h"

void frmMain::BuildButts()
{
    const platform::DesignRow first = mainDesign::row("cButt(1)");
    const double dpi = m_client->logicalDpiX();
    for (int n = 1; n <= board::numberCount; ++n) {
        if (n > 1) {
            const int left =
                first.left + (n - 1) % board::numbersPerColumn * (first.width + mainDesign::buttonGap);
            const int top = first.top + board::columnOf(n) * (first.height + mainDesign::buttonGap);
            auto *button = new platform::ColorButton(m_client);
            button->setObjectName(controlName("cButt", n));
            button->setText(QString::number(n));
            const QPoint place(platform::pixels(left, dpi), platform::pixels(top, dpi));
            button->setGeometry({place, cButt(1)->size()});
            m_cButt[static_cast<std::size_t>(n)] = button;
            setTabOrder(cButt(n - 1), button);
        }
        connect(cButt(n), &QPushButton::clicked, this, [this, n] { cButt_Click(n); });
        markNumber(n, false);
    }
}

void frmMain::markNumber(int n, bool called)
{
    iCalled[static_cast<std::size_t>(n)] = called ? 1 : 0;
    cButt(n)->setBackColor(called ? platform::colors::buttonShadow : platform::colors::buttonFace);
    cButt(n)->setAccessibleName(QChar(board::columnLetter(board::columnOf(n))) +
                                QStringLiteral(" %1").arg(n));
    cButt(n)->setAccessibleDescription(called ? QStringLiteral("called") : QStringLiteral("not called"));
}

void frmMain::markAll(bool called)
{
    for (int n = 1; n <= board::numberCount; ++n)
        markNumber(n, called);
}
