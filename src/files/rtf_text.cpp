#include "rtf_text.h"

#include "code_page.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <vector>

namespace files {

namespace {

/// Control words that stand for a character.
const QHash<QByteArray, char16_t> &characters()
{
    static const QHash<QByteArray, char16_t> table{
        {"par", u'\n'},           {"line", u'\n'},          {"sect", u'\n'},        {"page", u'\n'},
        {"row", u'\n'},           {"tab", u'\t'},           {"cell", u'\t'},        {"emdash", u'\u2014'},
        {"endash", u'\u2013'},    {"bullet", u'\u2022'},    {"lquote", u'\u2018'},  {"rquote", u'\u2019'},
        {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'}, {"emspace", u'\u2003'}, {"enspace", u'\u2002'},
    };
    return table;
}

/// Control words at whose group nothing is text.
bool hidesItsGroup(const QByteArray &word)
{
    static const QSet<QByteArray> table{"fonttbl", "colortbl", "stylesheet", "info",    "pict",
                                        "header",  "footer",   "headerl",    "headerr", "headerf",
                                        "footerl", "footerr",  "footerf",    "object",  "fldinst"};
    return table.contains(word);
}

/// Reads a file once, from its first byte to its last.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    QString text();

private:
    struct Group
    {
        bool hidden = false;
        int fallback = 1; // bytes that follow a \u for readers that do not know it
    };

    char next() { return m_at < m_bytes.size() ? m_bytes[m_at++] : '\0'; }
    char peek() const { return m_at < m_bytes.size() ? m_bytes[m_at] : '\0'; }
    void backslash();
    void controlWord();
    void obey(const QByteArray &word, int parameter);
    void hexByte();
    void append(const QString &piece);

    const QByteArray &m_bytes;
    qsizetype m_at = 0;
    int m_skip = 0; // characters still to be left out after a \u
    Group m_group;
    std::vector<Group> m_outer;
    QString m_text;
};

QString Reader::text()
{
    while (m_at < m_bytes.size()) {
        const char byte = next();
        if (byte == '{') {
            m_outer.push_back(m_group);
        } else if (byte == '}') {
            if (!m_outer.empty()) {
                m_group = m_outer.back();
                m_outer.pop_back();
            }
        } else if (byte == '\\') {
            backslash();
        } else if (byte != '\r' && byte != '\n') {
            append(textOfCodePage({&byte, 1}));
        }
    }
    return m_text;
}

void Reader::backslash()
{
    const char byte = peek();
    if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')) {
        controlWord();
        return;
    }
    ++m_at;
    if (byte == '\'')
        hexByte();
    else if (byte == '*')
        m_group.hidden = true;
    else if (byte == '~')
        append(QChar(0x00A0));
    else if (byte == '_')
        append(QChar(0x2011));
    else if (byte == '\n' || byte == '\r')
        append(QChar(u'\n'));
    else if (byte == '\\' || byte == '{' || byte == '}')
        append(QChar::fromLatin1(byte));
}

void Reader::controlWord()
{
    constexpr int mostDigits = 9;
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const qsizetype start = m_at;
    while (isLetter(peek()))
        ++m_at;
    const QByteArray word = m_bytes.mid(start, m_at - start);
    const qsizetype number = m_at;
    if (peek() == '-')
        ++m_at;
    while (isDigit(peek()) && m_at - number < mostDigits)
        ++m_at;
    const int parameter = m_bytes.mid(number, m_at - number).toInt();
    if (peek() == ' ')
        ++m_at;
    obey(word, parameter);
}

void Reader::obey(const QByteArray &word, int parameter)
{
    if (word == "u") {
        append(QChar(static_cast<char16_t>(parameter)));
        m_skip = m_group.fallback;
    } else if (word == "uc") {
        m_group.fallback = std::clamp(parameter, 0, 16);
    } else if (word == "bin") {
        m_at += std::clamp<qsizetype>(parameter, 0, m_bytes.size() - m_at);
    } else if (hidesItsGroup(word)) {
        m_group.hidden = true;
    } else if (const char16_t character = characters().value(word)) {
        append(QChar(character));
    }
}

void Reader::hexByte()
{
    const char byte = static_cast<char>(m_bytes.mid(m_at, 2).toInt(nullptr, 16));
    m_at = std::min(m_at + 2, m_bytes.size());
    append(textOfCodePage({&byte, 1}));
}

void Reader::append(const QString &piece)
{
    if (m_skip > 0)
        --m_skip;
    else if (!m_group.hidden)
        m_text += piece;
}

} // namespace

bool isRtf(const QByteArray &bytes)
{
    return bytes.startsWith("{\\rtf");
}

QString textOfRtf(const QByteArray &bytes)
{
    return Reader(bytes).text();
}

} // namespace files
