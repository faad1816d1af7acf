#include "draw.h"

#include <QRandomGenerator>

#include <chrono>

namespace game {

std::function<double()> randomFraction = [] {
    const auto now = static_cast<quint64>(std::chrono::system_clock::now().time_since_epoch().count());
    // This never fails: Qt makes up words of its own where the system has no entropy to give.
    QRandomGenerator &entropy = *QRandomGenerator::system();
    const quint32 seed[] = {static_cast<quint32>(now), static_cast<quint32>(now >> 32), entropy(), entropy()};
    return QRandomGenerator(seed).generateDouble();
};

} // namespace game
