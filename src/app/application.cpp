#include "application.h"

#include "error.h"
#include "message_box.h"

namespace app {

namespace {

constexpr int unexpected = -1; // the number of a failure that has none of its own

void report(const files::Error &error)
{
    controls::reportError(QApplication::activeWindow(), error);
}

} // namespace

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const files::Error &error) {
        report(error);
    } catch (const std::exception &error) {
        report({unexpected, QString::fromLocal8Bit(error.what())});
    } catch (...) {
        report({unexpected, QStringLiteral("Unexpected failure")});
    }
    return true;
}

} // namespace app
