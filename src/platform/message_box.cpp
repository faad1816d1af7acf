#include "platform/message_box.h"

#include <QApplication>
#include <QMessageBox>

namespace platform {

namespace {

QMessageBox::StandardButton ask(QWidget *owner, QMessageBox::Icon icon, QString text, const QString &title,
                                QMessageBox::StandardButtons buttons, QMessageBox::StandardButton safe)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QMessageBox box(icon, title.isEmpty() ? QApplication::applicationDisplayName() : title, text, buttons,
                    owner);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(safe);
    box.setEscapeButton(safe);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

void notice(QWidget *owner, const QString &text, const QString &title)
{
    ask(owner, QMessageBox::NoIcon, text, title, QMessageBox::Ok, QMessageBox::Ok);
}

void warning(QWidget *owner, const QString &text, const QString &title)
{
    ask(owner, QMessageBox::Warning, text, title, QMessageBox::Ok, QMessageBox::Ok);
}

bool confirmed(QWidget *owner, const QString &text, const QString &title)
{
    return ask(owner, QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No,
               QMessageBox::No) == QMessageBox::Yes;
}

} // namespace platform
