#pragma once

#include <QByteArray>

#include <optional>

namespace base {

// A profile is a text file of sections "[Name]" and, below each, keys "Name=value", in 8-bit characters of
// the system code page. Names match without regard to ASCII case; the first section and in it the first key
// of a name count. Blanks around names and values mean nothing, nor does one pair of quotes, " or ', around a
// value. Lines that begin with ";" and lines above the first section are passed over.
//
// Names given to these functions contain no line break and do not begin with ";" or "["; the name of a
// section contains no "]", that of a key no "=".

/// The value of a key, as bytes; nothing when `content` has no such section or key in it. Takes any bytes.
std::optional<QByteArray> findValue(QByteArrayView content, QByteArrayView section, QByteArrayView key);

/// `content` with one value set and every other byte as it was. A key that is not there is added at the end
/// of its section, a section at the end of the file, with the file's own line ends (CRLF where it has none).
/// `findValue` gives the value back as it was set, except that line breaks become blanks: a value that begins
/// or ends with blanks, or stands in quotes, is put into a pair of quotes of its own.
QByteArray withValue(QByteArray content, QByteArrayView section, QByteArrayView key, QByteArrayView value);

} // namespace base
