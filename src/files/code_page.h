#pragma once

#include <QByteArrayView>
#include <QString>

namespace files {

/// The text of bytes in the system's 8-bit code page; away from Windows in Windows-1252, in which Latin-1
/// reads right too.
QString textOfCodePage(QByteArrayView bytes);

} // namespace files
