#pragma once

#include <QString>

/// What the voice says of a called number: the letter word with the number, then the same with the digits one
/// by one. The letter words are spelt the way a voice has to read them.
namespace voice {

/// "Gee, 48": the first phrase of number `n`, 1 to 75.
QString firstPhrase(int n);

/// "Gee, 4 ,8": the phrase that follows `phrase`. One digit alone is repeated, and the 4 has a saying of its
/// own, "And After". Reads the phrase by character positions, so that any text has an answer: what begins
/// with no letter word comes back unchanged, and a character that the phrase does not have is left out.
QString followUp(const QString &phrase);

} // namespace voice
