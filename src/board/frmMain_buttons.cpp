#include "frmMain.h"

#include "buttons.h"
#include "frmMain_design.h"
#include "numbers.h"

void frmMain::BuildButts()
{
    for (int n = 1; n <= game::numberCount; ++n) {
        if (n > 1) {
            cButt[n] = new controls::ColorButton(m_client);
            cButt[n]->setObjectName(QStringLiteral("cButt(%1)").arg(n));
            cButt[n]->setText(QString::number(n));
            controls::place(cButt[n], mainDesign::numberButton(n), m_scale);
            setTabOrder(cButt[n - 1], cButt[n]);
        }
        connect(cButt[n], &QPushButton::clicked, this, [this, n] { cButt_Click(n); });
        markNumber(n, false);
    }
}
