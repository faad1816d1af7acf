#pragma once

#include <QByteArray>
#include <QString>

namespace files {

/// Whether `bytes` begin like a rich-text file.
bool isRtf(const QByteArray &bytes);

/// The bare text of a rich-text file: characters, paragraphs, lines and tabs, without fonts, colours,
/// pictures and the like. A damaged file gives what can be made of it.
QString textOfRtf(const QByteArray &bytes);

} // namespace files
