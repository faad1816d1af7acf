#include "frmMain.h"

#include "colors.h"
#include "controls.h"
#include "frmMain_design.h"
#include "numbers.h"
#include "units.h"

void frmMain::BuildButts()
{
    const controls::DesignRow first = mainDesign::row("cButt(1)");
    const double dpi = m_client->logicalDpiX();
    for (int n = 1; n <= game::numberCount; ++n) {
        if (n > 1) {
            const int left =
                first.left + (n - 1) % game::numbersPerColumn * (first.width + mainDesign::buttonGap);
            const int top = first.top + game::columnOf(n) * (first.height + mainDesign::buttonGap);
            auto *button = new controls::ColorButton(m_client);
            button->setObjectName(controlName("cButt", n));
            button->setText(QString::number(n));
            const QPoint place(controls::pixels(left, dpi), controls::pixels(top, dpi));
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
    cButt(n)->setBackColor(called ? controls::colors::buttonShadow : controls::colors::buttonFace);
    cButt(n)->setAccessibleName(QChar(game::columnLetter(game::columnOf(n))) + QStringLiteral(" %1").arg(n));
    cButt(n)->setAccessibleDescription(called ? QStringLiteral("called") : QStringLiteral("not called"));
}

void frmMain::markAll(bool called)
{
    for (int n = 1; n <= game::numberCount; ++n)
        markNumber(n, called);
}
