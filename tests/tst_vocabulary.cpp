// What can be said without a screen: labels, entries, the draw, the phrases of the voice and the texts of
// files.

#include "draw.h"
#include "entry.h"
#include "numbers.h"
#include "phrases.h"
#include "text_file.h"

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <numeric>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class TestVocabulary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labels()
    {
        QString current, past;
        for (const int n : {0, 1, 15, 16, 30, 31, 45, 46, 60, 61, 75, 76}) {
            current += game::currentLabel(n) + '|';
            past += game::pastEntry(n) + '|';
        }
        QCOMPARE(current, "|B1|B15|I16|I30|N31|N45|G46|G60|O61|O75||");
        QCOMPARE(past, "|B1 |B15|I16|I30|N31|N45|G46|G60|O61|O75||");
    }

    void boardTextHoldsEveryCellAtItsOffset()
    {
        const QString text = game::boardText();
        QVERIFY(text.size() == 241 && text.startsWith("1  2  3  ") && text.mid(42, 10) == "15 \r\n\r\n16 ");
        QCOMPARE(game::cellOffset(16), 49);
        for (int n = 1; n <= 75; ++n)
            QCOMPARE(text.mid(game::cellOffset(n), 3).trimmed(), QString::number(n));
        QCOMPARE(game::letterColumn(2), "B\r\n\r\nI\r\n\r\nN\r\n\r\nG\r\n\r\nO");
    }

    void entries()
    {
        const std::pair<QString, int> rows[] = {
            {" \t7 ", 7}, {"+1.2E+1", 12}, {"b7", 7},  {"N 4", 4},    {"O75", 75},    {"G7", 7},
            {"g100", 10}, {"B.9", 1},      {"0.5", 0}, {"0.6", 1},    {"1.5", 2},     {"2.5", 2},
            {"75.4", 75}, {"75.5", 0},     {"76", 0},  {"0", 0},      {"-3", 0},      {"B-3", 0},
            {"O76", 0},   {"B1e5", 0},     {"", 0},    {"B", 0},      {"BX", 0},      {"Z7", 0},
            {" N33", 0},  {"7B", 0},       {"nan", 0}, {"0x10", 0},   {"1,0", 0},     {"7\n", 0},
            {"٣", 0},     {"B３", 0},      {"ı6", 0},  {"1e9999", 0}, {"1e-9999", 0},
        };
        for (const auto &[entry, called] : rows)
            QVERIFY2(board::calledBy(board::withoutLetter(entry)).value_or(0) == called, qPrintable(entry));
    }

    void draw()
    {
        const int four[] = {2, 3, 5, 7};
        QCOMPARE(board::pick(four, 0.0).value_or(0), 2);
        QCOMPARE(board::pick(four, 0.2499).value_or(0), 2);
        QCOMPARE(board::pick(four, 1.0 - 0x1p-53).value_or(0), 7);
        QVERIFY(!board::pick({}, 0.0));

        constexpr int balls = 75, draws = 400'000;
        std::vector<int> pool(balls), counts(balls + 1);
        std::iota(pool.begin(), pool.end(), 1);
        for (int i = 0; i < draws; ++i)
            ++counts.at(static_cast<std::size_t>(*board::pick(pool, board::randomFraction())));
        const auto squares = [](double sum, int count) { return sum + double(count) * count; };
        const double chiSquare =
            std::accumulate(counts.begin() + 1, counts.end(), 0.0, squares) * balls / draws - draws;
        // 74 degrees of freedom: above 140 by chance 5 times in 1,000,000; one ball favoured by a sixth
        // gives 222.
        QVERIFY2(chiSquare > 30 && chiSquare < 140, qPrintable(QString::number(chiSquare)));
    }

    /// The texts of all calls are in speech_sound.sh.
    void phrases()
    {
        const std::pair<int, const char *> firsts[] = {
            {15, "Bee, 15"}, {16, "Eye, 16"}, {45, "En, 45"}, {46, "Gee, 46"}, {61, "Oh, 61"}};
        for (const auto &[n, phrase] : firsts)
            QCOMPARE(voice::firstPhrase(n), phrase);
        const std::pair<const char *, const char *> followUps[] = {
            {"Bee, 4", "And After"},    {"Bee, 5", "Bee, 5"},
            {"Bee, 10", "Bee, 1 ,0"},   {"Eye, 30", "Eye, 3 ,0"},
            {"Gee, 4 ,8", "Gee, 4 , "}, // two calls at once: the follow-up again
            {"And After", "And After"}, {"", ""},
            {"gee, 48", "gee, 48"},     {" En, 33", " En, 33"},
            {"Be", "Bee,  ,"},          {"En", "En,  ,"},
            {"Eye, 2", "Eye, 2 ,"},     {"Beast4", "And After"},
        };
        for (const auto &[phrase, followUp] : followUps)
            QCOMPARE(voice::followUp(phrase), followUp);
    }

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
        };
        for (const auto &[bytes, text] : rows)
            QCOMPARE(files::decodedText(bytes), text);
    }

    void whatIsNoFileIsNoText()
    {
        const QTemporaryDir folder;
        QVERIFY(!files::readTextFile(folder.filePath("none.txt")));
        QVERIFY(!files::readTextFile(folder.path()));
#ifdef Q_OS_UNIX
        QCOMPARE(::mkfifo(qPrintable(folder.filePath("pipe")), 0600), 0);
        QVERIFY(!files::readTextFile(folder.filePath("pipe")));
        QVERIFY(!files::readTextFile("/proc/self/mem")); // opens, and cannot be read
#endif
    }

    void longFileIsCutAtACharacter()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write("xy" + QByteArray("€").repeated(files::longestText));
        file.close();
        const QString text = files::readTextFile(file.fileName()).value_or("");
        const qsizetype whole = (files::longestText - 2) / 3;
        QVERIFY(text.startsWith("xy" + QString(whole, u'€') + "\n\n(The file goes on."));
    }
};

QTEST_APPLESS_MAIN(TestVocabulary)
#include "tst_vocabulary.moc"
