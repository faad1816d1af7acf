// Linked with the program's main(), or, as BARE, with one that shows a window with BARE lines of letters in
// it, in the program's two faces: ends the process when a window has been painted for the first time. With
// the argument "stay" it does not.

#include <QApplication>
#include <QLabel>
#include <QPaintEvent>
#include <QTimer>
#include <QWidget>

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

void endAtFirstPaint()
{
    if (!QCoreApplication::arguments().contains(QStringLiteral("stay")))
        qApp->installEventFilter(new EndAtFirstPaint);
}
Q_COREAPP_STARTUP_FUNCTION(endAtFirstPaint)

} // namespace

#ifdef BARE
int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(1282, 692);
    for (int line = 0; line < BARE; ++line) {
        auto *label = new QLabel(QStringLiteral("BINGO 75"), &window);
        label->setFont(
            QFont(line % 2 ? QStringLiteral("Liberation Sans") : QStringLiteral("Liberation Mono"), 33));
        label->setGeometry(0, 100 * line, 600, 100);
    }
    window.show();
    return QApplication::exec();
}
#endif
