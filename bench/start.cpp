// Starts like the program, or like a program with nothing in its window, and ends when the window has been
// painted for the first time.

#include <QApplication>
#include <QPaintEvent>
#include <QTimer>
#include <QWidget>

#ifndef BARE
#include "app/modMain.h"
#include "platform/appearance.h"
#endif

namespace {

class EndAtFirstPaint : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (event->type() == QEvent::Paint && widget && widget->isWindow())
            QTimer::singleShot(0, qApp, [] {
                QGuiApplication::sync();
                std::_Exit(EXIT_SUCCESS);
            });
        return false;
    }
};

} // namespace

int main(int argc, char *argv[])
{
#ifndef BARE
    QApplication::setDesktopSettingsAware(false);
#endif
    QApplication application(argc, argv);
    EndAtFirstPaint end;
    application.installEventFilter(&end);
#ifdef BARE
    QWidget window;
    window.resize(1282, 692);
    window.show();
#else
    platform::applyAppearance(application);
    modMain::Main();
#endif
    return QApplication::exec();
}
