#include "message_box.h"

#include "error.h"
#include "menu_bar.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QStyle>
#include <QTimer>

namespace controls {

/// Wide enough for the title, in whatever font the desktop writes it, between an icon and three buttons.
static int titleWidth(const QMessageBox &box)
{
    QFont bold = box.font();
    bold.setBold(true);
    const int caption = box.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return QFontMetrics(bold, &box).horizontalAdvance(box.windowTitle()) * 5 / 4 + 4 * caption;
}

/// A notice, which has no icon, has its text and its button in the middle.
static void layOut(QMessageBox &box)
{
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    const int columns = grid->columnCount();
    grid->addItem(new QSpacerItem(titleWidth(box), 0), grid->rowCount(), 0, 1, columns);
    auto *text = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    text->setFocusPolicy(Qt::NoFocus); // Orca 51 passes over a label that takes the focus, be it from a click
    if (box.icon() == QMessageBox::NoIcon) {
        grid->addWidget(text, 0, 0, 1, columns); // over the empty columns of the icon, too
        text->setContentsMargins({});
        text->setAlignment(Qt::AlignCenter);
        box.findChild<QDialogButtonBox *>()->setCenterButtons(true);
    }
}

/// Shows a box with an OK button, or with Yes and No, and answers whether it was Yes.
static bool ask(QWidget *owner, QMessageBox::Icon icon, const QString &text, const QString &title)
{
    const bool isQuestion = icon == QMessageBox::Question;
    // Closing the owner deletes the box.
    const QPointer box = new QMessageBox(
        icon, title, text, isQuestion ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, owner);
    box->setTextFormat(Qt::PlainText);
    layOut(*box);
    box->setDefaultButton(isQuestion ? QMessageBox::No : QMessageBox::Ok);
    for (QAbstractButton *button : box->buttons())
        button->setFocusPolicy(Qt::TabFocus); // a press on Yes that slips off leaves Enter to No
    const QPointer asking = owner;
    const int answer = box->exec();
    delete box;
    if (asking && !QApplication::activeWindow())
        asking->activateWindow(); // where no window manager does it
    return answer == QMessageBox::Yes;
}

void notice(QWidget *owner, const QString &text)
{
    ask(owner, QMessageBox::NoIcon, text, QApplication::applicationDisplayName());
}

bool confirmed(QWidget *owner, const QString &text, const QString &title)
{
    return ask(owner, QMessageBox::Question, text, title);
}

void reportError(QWidget *owner, const base::Error &error)
{
    const auto later = [owner = QPointer(owner), error] { reportError(owner, error); };
    if (const QWidget *open = QApplication::activeModalWidget())
        QObject::connect(open, &QObject::destroyed, qApp, later, Qt::QueuedConnection);
    else if (MenuBar::isInUse())
        QTimer::singleShot(100, qApp, later);
    else
        ask(owner, QMessageBox::Warning,
            QStringLiteral("Desc: %1\nErr #: %2").arg(error.description, QString::number(error.number)),
            QStringLiteral("Run-Time Error"));
}

} // namespace controls
