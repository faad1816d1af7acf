#pragma once

class QString;

namespace windows {

/// Hands an address to whatever the desktop opens addresses with, and returns at once. Where nothing does,
/// nothing happens.
void openAddress(const QString &address);

} // namespace windows
