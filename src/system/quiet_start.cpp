#include "quiet_start.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace os {

namespace {

QtMessageHandler formerHandler = nullptr;
std::vector<std::pair<QtMsgType, QString>> heldBack;

void holdBack(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtFatalMsg) {
        heldBack.emplace_back(type, message);
        return;
    }
    const QString reason = heldBack.empty() ? message.section(u'\n', 0, 0) : heldBack.front().second;
    std::fprintf(stderr, "vellomir: cannot open a window: %s\n", qPrintable(reason.simplified()));
    std::_Exit(EXIT_FAILURE);
}

} // namespace

QuietStart::QuietStart()
{
    formerHandler = qInstallMessageHandler(holdBack);
}

QuietStart::~QuietStart()
{
    qInstallMessageHandler(formerHandler);
    for (const auto &[type, message] : std::exchange(heldBack, {}))
        qt_message_output(type, {}, message);
}

} // namespace os
