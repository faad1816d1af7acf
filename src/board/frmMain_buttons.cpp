#include "frmMain.h"

#include "buttons.h"
#include "design_table.h"
#include "frmMain_design.h"
#include "numbers.h"

void frmMain::BuildButts()
{
    const controls::DesignRow first = mainDesign::row("cButt(1)");
    const double dpi = m_client->logicalDpiX();
    for (int n = 1; n <= game::numberCount; ++n) {
        if (n > 1) {
            const int left =
                first.left + (n - 1) % game::numbersPerColumn * (first.width + mainDesign::buttonGap);
            const int top = first.top + game::columnOf(n) * (first.height + mainDesign::buttonGap);
            cButt[n] = new controls::ColorButton(m_client);
            cButt[n]->setObjectName(QStringLiteral("cButt(%1)").arg(n));
            cButt[n]->setText(QString::number(n));
            const QPoint place(controls::pixels(left, dpi), controls::pixels(top, dpi));
            cButt[n]->setGeometry({place, cButt[1]->size()});
            setTabOrder(cButt[n - 1], cButt[n]);
        }
        connect(cButt[n], &QPushButton::clicked, this, [this, n] { cButt_Click(n); });
        markNumber(n, false);
    }
}
