// Texts of files in every encoding and of every size.

#include "platform/text_file.h"

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoded()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"caf\xC3\xA9 \xE2\x82\xAC", "café €"},
            {"\xEF\xBB\xBF\xC3\xA9", "é"},
            {QByteArray("\xFF\xFE\xE9\x00\xAC\x20", 6), "é€"},
            {QByteArray("\xFE\xFF\x00\xE9\x20\xAC", 6), "é€"},
#ifndef Q_OS_WIN
            {"caf\xE9 \x80 \x93quoted\x94 \xFF", "café € “quoted” ÿ"},
#endif
            {R"({\rtf1\ansi\uc1{\fonttbl{\f0\fswiss Arial;}}{\*\generator X 1;}
{\info{\title Secret}}\f0\fs20 Press \b Clear\b0\'e9 \{now\}\par
Next\tab one\line \u8364? \u-10179?\u-8704? a\\b\~c\par})",
             "Press Clearé {now}\nNext\tone\n€ \U0001F600 a\\b\u00A0c\n"},
            {R"({\rtf1\uc0\u233 a{\pict\bin3 xyz}b})", "éab"},
            {"{\\b no}", "{\\b no}"}, // only looks like rich text
            {"{\\rtf1" + QByteArray(1000000, '{'), ""},
        };
        for (const auto &[bytes, text] : rows)
            QCOMPARE(platform::decodedText(bytes), text);
    }

    void whatIsNoFileIsNoText()
    {
        const QTemporaryDir folder;
        QVERIFY(!platform::readTextFile(folder.filePath("none.txt")));
        QVERIFY(!platform::readTextFile(folder.path()));
#ifdef Q_OS_UNIX
        QCOMPARE(::mkfifo(qPrintable(folder.filePath("pipe")), 0600), 0);
        QVERIFY(!platform::readTextFile(folder.filePath("pipe")));
        QVERIFY(!platform::readTextFile("/proc/self/mem")); // opens, and cannot be read
#endif
    }

    void longFileIsCutAtACharacter()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write("xy" + QByteArray("€").repeated(platform::longestText));
        file.close();
        const QString text = platform::readTextFile(file.fileName()).value_or("");
        const qsizetype whole = (platform::longestText - 2) / 3;
        QVERIFY(text.startsWith("xy" + QString(whole, u'€') + "\n\n(The file goes on."));
    }
};

QTEST_APPLESS_MAIN(TestTexts)
#include "tst_texts.moc"
