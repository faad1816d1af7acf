#include "message_box.h"

#include "error.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QStyle>
#include <QTimer>

#include <deque>

namespace controls {

namespace {

struct Report
{
    QPointer<QWidget> owner;
    files::Error error;
};

int openBoxes = 0;
std::deque<Report> waitingReports;

void showNextReport()
{
    if (openBoxes > 0 || waitingReports.empty())
        return;
    const Report next = waitingReports.front();
    waitingReports.pop_front();
    reportError(next.owner, next.error);
}

/// A width that shows the title whole: the desktop writes it in a font of its own, between an icon and three
/// buttons.
int titleWidth(const QMessageBox &box)
{
    QFont bold = box.font();
    bold.setBold(true);
    const int caption = box.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return QFontMetrics(bold, &box).horizontalAdvance(box.windowTitle()) * 5 / 4 + 4 * caption;
}

/// A notice, which has no icon, has its text and its button in the middle.
void layOut(QMessageBox &box)
{
    auto *text = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    grid->setColumnMinimumWidth(grid->columnCount() - 1,
                                titleWidth(box)); // the text's own width still counts
    if (box.icon() == QMessageBox::NoIcon) {
        grid->addWidget(text, 0, 0, 1, grid->columnCount()); // over the empty columns of the icon, too
        text->setContentsMargins({});
        text->setAlignment(Qt::AlignCenter);
        box.findChild<QDialogButtonBox *>()->setCenterButtons(true);
    }
}

QMessageBox::StandardButton ask(QWidget *owner, QMessageBox::Icon icon, QString text, const QString &title,
                                QMessageBox::StandardButtons buttons, QMessageBox::StandardButton safe)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    // Closing the owner deletes the box.
    const QPointer box = new QMessageBox(
        icon, title.isEmpty() ? QApplication::applicationDisplayName() : title, text, buttons, owner);
    box->setTextFormat(Qt::PlainText);
    layOut(*box);
    box->setDefaultButton(safe);
    box->setEscapeButton(safe);
    ++openBoxes;
    const int answer = box->exec();
    --openBoxes;
    delete box;
    if (!waitingReports.empty())
        QTimer::singleShot(0, qApp, showNextReport);
    return static_cast<QMessageBox::StandardButton>(answer);
}

} // namespace

void notice(QWidget *owner, const QString &text, const QString &title)
{
    ask(owner, QMessageBox::NoIcon, text, title, QMessageBox::Ok, QMessageBox::Ok);
}

bool confirmed(QWidget *owner, const QString &text, const QString &title)
{
    return ask(owner, QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No,
               QMessageBox::No) == QMessageBox::Yes;
}

void reportError(QWidget *owner, const files::Error &error)
{
    if (openBoxes > 0) {
        waitingReports.push_back({owner, error});
        return;
    }
    const QString text =
        QStringLiteral("Desc: %1\r\nErr #: %2").arg(error.description, QString::number(error.number));
    ask(owner, QMessageBox::Warning, text, QStringLiteral("Run-Time Error"), QMessageBox::Ok,
        QMessageBox::Ok);
}

} // namespace controls
