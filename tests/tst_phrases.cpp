// The texts that the voice is given, all of them.

#include "voice/phrases.h"

#include <QTest>

struct Call
{
    const char *first;
    const char *followUp;
};

// clang-format off
constexpr Call calls[] = {
    {"Bee, 1", "Bee, 1"}, {"Bee, 2", "Bee, 2"}, {"Bee, 3", "Bee, 3"}, {"Bee, 4", "And After"},
    {"Bee, 5", "Bee, 5"}, {"Bee, 6", "Bee, 6"}, {"Bee, 7", "Bee, 7"}, {"Bee, 8", "Bee, 8"},
    {"Bee, 9", "Bee, 9"}, {"Bee, 10", "Bee, 1 ,0"}, {"Bee, 11", "Bee, 1 ,1"}, {"Bee, 12", "Bee, 1 ,2"},
    {"Bee, 13", "Bee, 1 ,3"}, {"Bee, 14", "Bee, 1 ,4"}, {"Bee, 15", "Bee, 1 ,5"}, {"Eye, 16", "Eye, 1 ,6"},
    {"Eye, 17", "Eye, 1 ,7"}, {"Eye, 18", "Eye, 1 ,8"}, {"Eye, 19", "Eye, 1 ,9"}, {"Eye, 20", "Eye, 2 ,0"},
    {"Eye, 21", "Eye, 2 ,1"}, {"Eye, 22", "Eye, 2 ,2"}, {"Eye, 23", "Eye, 2 ,3"}, {"Eye, 24", "Eye, 2 ,4"},
    {"Eye, 25", "Eye, 2 ,5"}, {"Eye, 26", "Eye, 2 ,6"}, {"Eye, 27", "Eye, 2 ,7"}, {"Eye, 28", "Eye, 2 ,8"},
    {"Eye, 29", "Eye, 2 ,9"}, {"Eye, 30", "Eye, 3 ,0"}, {"En, 31", "En, 3 ,1"}, {"En, 32", "En, 3 ,2"},
    {"En, 33", "En, 3 ,3"}, {"En, 34", "En, 3 ,4"}, {"En, 35", "En, 3 ,5"}, {"En, 36", "En, 3 ,6"},
    {"En, 37", "En, 3 ,7"}, {"En, 38", "En, 3 ,8"}, {"En, 39", "En, 3 ,9"}, {"En, 40", "En, 4 ,0"},
    {"En, 41", "En, 4 ,1"}, {"En, 42", "En, 4 ,2"}, {"En, 43", "En, 4 ,3"}, {"En, 44", "En, 4 ,4"},
    {"En, 45", "En, 4 ,5"}, {"Gee, 46", "Gee, 4 ,6"}, {"Gee, 47", "Gee, 4 ,7"}, {"Gee, 48", "Gee, 4 ,8"},
    {"Gee, 49", "Gee, 4 ,9"}, {"Gee, 50", "Gee, 5 ,0"}, {"Gee, 51", "Gee, 5 ,1"}, {"Gee, 52", "Gee, 5 ,2"},
    {"Gee, 53", "Gee, 5 ,3"}, {"Gee, 54", "Gee, 5 ,4"}, {"Gee, 55", "Gee, 5 ,5"}, {"Gee, 56", "Gee, 5 ,6"},
    {"Gee, 57", "Gee, 5 ,7"}, {"Gee, 58", "Gee, 5 ,8"}, {"Gee, 59", "Gee, 5 ,9"}, {"Gee, 60", "Gee, 6 ,0"},
    {"Oh, 61", "Oh, 6 ,1"}, {"Oh, 62", "Oh, 6 ,2"}, {"Oh, 63", "Oh, 6 ,3"}, {"Oh, 64", "Oh, 6 ,4"},
    {"Oh, 65", "Oh, 6 ,5"}, {"Oh, 66", "Oh, 6 ,6"}, {"Oh, 67", "Oh, 6 ,7"}, {"Oh, 68", "Oh, 6 ,8"},
    {"Oh, 69", "Oh, 6 ,9"}, {"Oh, 70", "Oh, 7 ,0"}, {"Oh, 71", "Oh, 7 ,1"}, {"Oh, 72", "Oh, 7 ,2"},
    {"Oh, 73", "Oh, 7 ,3"}, {"Oh, 74", "Oh, 7 ,4"}, {"Oh, 75", "Oh, 7 ,5"},
};
// clang-format on

class TestPhrases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNumber();
    void oddPhrases_data();
    void oddPhrases();
};

void TestPhrases::everyNumber()
{
    QCOMPARE(std::size(calls), 75U);
    int n = 0;
    for (const Call &call : calls) {
        QCOMPARE(voice::firstPhrase(++n), QString::fromLatin1(call.first));
        QCOMPARE(voice::followUp(QString::fromLatin1(call.first)), QString::fromLatin1(call.followUp));
    }
}

void TestPhrases::oddPhrases_data()
{
    QTest::addColumn<QString>("phrase");
    QTest::addColumn<QString>("followUp");
    // clang-format off
    QTest::newRow("two calls at once: the follow-up again") << "Gee, 4 ,8" << "Gee, 4 , ";
    QTest::newRow("the same with a short word")             << "Oh, 6 ,2"  << "Oh, 6 , ";
    QTest::newRow("the same with B")                        << "Bee, 1 ,2" << "Bee, 1 , ";
    QTest::newRow("the saying of the 4 stays")              << "And After" << "And After";
    QTest::newRow("nothing")                                << ""          << "";
    QTest::newRow("one character")                          << "B"         << "B";
    QTest::newRow("case counts")                            << "gee, 48"   << "gee, 48";
    QTest::newRow("case counts in the second letter")       << "OH, 62"    << "OH, 62";
    QTest::newRow("not at the start")                       << " En, 33"   << " En, 33";
    QTest::newRow("the word alone")                         << "En, "      << "En,  ,";
    QTest::newRow("two letters alone")                      << "Be"        << "Bee,  ,";
    QTest::newRow("one digit behind a long word")           << "Eye, 2"    << "Eye, 2 ,";
    QTest::newRow("three digits")                           << "Bee, 123"  << "Bee, 1 ,2";
    QTest::newRow("a digit by its place alone")             << "Beast4"    << "And After";
    QTest::newRow("no digit at all in its place")           << "Beyond"    << "Bee, d";
    // clang-format on
}

void TestPhrases::oddPhrases()
{
    QFETCH(QString, phrase);
    QTEST(voice::followUp(phrase), "followUp");
}

QTEST_APPLESS_MAIN(TestPhrases)
#include "tst_phrases.moc"
