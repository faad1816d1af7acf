// Texts of files in every encoding and of every size.

#include "platform/text_file.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoded_data();
    void decoded();
    void damagedRichTextIsRead();
    void whatIsNoFileIsNoText();
    void hugeFileIsCutAtACharacter();
};

void TestTexts::decoded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QByteArray zero(1, '\0');
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("UTF-8") << QByteArray("caf\xC3\xA9 \xE2\x82\xAC") << QStringLiteral("café €");
    QTest::newRow("UTF-8 with a mark") << QByteArray("\xEF\xBB\xBF\xC3\xA9") << QStringLiteral("é");
    QTest::newRow("UTF-16 little") << QByteArray("\xFF\xFE\xE9\x00\xAC\x20", 6) << QStringLiteral("é€");
    QTest::newRow("UTF-16 big") << QByteArray("\xFE\xFF\x00\xE9\x20\xAC", 6) << QStringLiteral("é€");
#ifndef Q_OS_WIN
    QTest::newRow("8-bit code page") << QByteArray("caf\xE9 \x80 \x93quoted\x94 \xFF")
                                     << QStringLiteral("café € “quoted” ÿ");
#endif
    QTest::newRow("rich text") << QByteArray(
                                      R"({\rtf1\ansi\uc1{\fonttbl{\f0\fswiss Arial;}}{\*\generator X 1;}
{\info{\title Secret}}\f0\fs20 Press \b Clear\b0\'e9 \{now\}\par
Next\tab one\line \u8364? \u-10179?\u-8704? a\\b\~c\par})")
                               << QStringLiteral("Press Clearé {now}\nNext\tone\n€ \U0001F600 a\\b\u00A0c\n");
    QTest::newRow("rich text, no fallback characters")
        << QByteArray(R"({\rtf1\uc0\u233 a})") << QStringLiteral("éa");
    QTest::newRow("codes that only look like rich text")
        << QByteArray("{\\b no}") << QStringLiteral("{\\b no}");
}

void TestTexts::decoded()
{
    QFETCH(QByteArray, bytes);
    QTEST(platform::decodedText(bytes), "text");
}

void TestTexts::damagedRichTextIsRead()
{
    const QByteArray whole(R"({\rtf1 a{\pict\bin3 xyz}{\uc2 b\'}}}}\u99999999999 \uc-5 c\bin99999999 d\)");
    for (qsizetype length = 5; length <= whole.size(); ++length)
        QVERIFY(!platform::decodedText(whole.left(length)).contains(u'x'));
    QVERIFY(platform::decodedText(QByteArray("{\\rtf1") + QByteArray(1000000, '{')).isEmpty());
}

void TestTexts::whatIsNoFileIsNoText()
{
    const QTemporaryDir folder;
    QVERIFY(!platform::readTextFile(folder.filePath(QStringLiteral("none.txt"))));
    QVERIFY(!platform::readTextFile(folder.path()));
#ifdef Q_OS_UNIX
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!platform::readTextFile(pipe));
    QVERIFY(!platform::readTextFile(QStringLiteral("/proc/self/mem"))); // opens, and cannot be read
#endif
}

void TestTexts::hugeFileIsCutAtACharacter()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("huge.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("xy" + QByteArray("€").repeated(platform::longestText));
    QVERIFY(file.resize(100'000'000));
    file.close();
    QElapsedTimer clock;
    clock.start();
    const std::optional<QString> text = platform::readTextFile(file.fileName());
    QVERIFY(clock.elapsed() < 500);
    QVERIFY(text);
    const qsizetype whole = (platform::longestText - 2) / 3;
    QCOMPARE(text->left(2 + whole), QStringLiteral("xy") + QString(whole, u'€'));
    QVERIFY(text->mid(2 + whole).startsWith(QStringLiteral("\n\n(The file goes on.")));
}

QTEST_APPLESS_MAIN(TestTexts)
#include "tst_texts.moc"
