// What can be said of numbers and entries without a screen.

#include "board/entry.h"
#include "board/numbers.h"
#include "platform/numeric.h"

#include <QTest>

class TestVocabulary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labels_data();
    void labels();
    void boardTextHoldsEveryCellAtItsOffset();
    void letterColumns();
    void numbersAsTyped_data();
    void numbersAsTyped();
    void entries_data();
    void entries();
};

void TestVocabulary::labels_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("past");
    QTest::newRow("empty slot") << 0 << ""
                                << "";
    QTest::newRow("one digit is padded in the past list") << 7 << "B7"
                                                          << "B7 ";
    QTest::newRow("last B") << 15 << "B15"
                            << "B15";
    QTest::newRow("first I") << 16 << "I16"
                             << "I16";
    QTest::newRow("last I") << 30 << "I30"
                            << "I30";
    QTest::newRow("first N") << 31 << "N31"
                             << "N31";
    QTest::newRow("last N") << 45 << "N45"
                            << "N45";
    QTest::newRow("first G") << 46 << "G46"
                             << "G46";
    QTest::newRow("last G") << 60 << "G60"
                            << "G60";
    QTest::newRow("first O") << 61 << "O61"
                             << "O61";
    QTest::newRow("last O") << 75 << "O75"
                            << "O75";
    QTest::newRow("past the end") << 76 << ""
                                  << "";
}

void TestVocabulary::labels()
{
    QFETCH(int, number);
    QTEST(board::currentLabel(number), "current");
    QTEST(board::pastEntry(number), "past");
}

void TestVocabulary::boardTextHoldsEveryCellAtItsOffset()
{
    const QString text = board::boardText();
    QCOMPARE(text.size(), 241);
    QCOMPARE(text.left(9), QStringLiteral("1  2  3  "));
    QCOMPARE(text.mid(42, 10), QStringLiteral("15 \r\n\r\n16 "));
    QCOMPARE(board::cellOffset(16), 49);
    QCOMPARE(board::cellOffset(75), 238);
    for (int n = 1; n <= 75; ++n)
        QCOMPARE(text.mid(board::cellOffset(n), 3).trimmed(), QString::number(n));
}

void TestVocabulary::letterColumns()
{
    QCOMPARE(board::letterColumn(2), QStringLiteral("B\r\n\r\nI\r\n\r\nN\r\n\r\nG\r\n\r\nO"));
    QCOMPARE(board::letterColumn(1), QStringLiteral("B\r\nI\r\nN\r\nG\r\nO"));
}

void TestVocabulary::numbersAsTyped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<double>("value");
    QTest::newRow("blanks around") << " \t7 " << true << 7.0;
    QTest::newRow("sign") << "-3" << true << -3.0;
    QTest::newRow("plus") << "+12.5" << true << 12.5;
    QTest::newRow("point first") << ".5" << true << 0.5;
    QTest::newRow("point last") << "5." << true << 5.0;
    QTest::newRow("exponent") << "1.2E+1" << true << 12.0;
    QTest::newRow("too small for a double") << "1e-9999" << true << 0.0;
    QTest::newRow("too large for a double") << "-1e9999" << true << -qInf();
    QTest::newRow("10,000 digits") << QString(10000, u'9') << true << qInf();
    for (const char *text : {"", " ", ".", "+", "-.", "e5", "1e", "1e+", "nan", "inf", "0x10", "1,000", "1 2",
                             "1.2.3", "--1", "1f", "٣", "３", "7\n"})
        QTest::newRow(qPrintable(QStringLiteral("no number: '%1'").arg(QString::fromUtf8(text))))
            << QString::fromUtf8(text) << false << 0.0;
}

void TestVocabulary::numbersAsTyped()
{
    QFETCH(QString, text);
    const std::optional<double> value = platform::parseNumber(text);
    QTEST(value.has_value(), "isNumber");
    if (value)
        QTEST(*value, "value");
}

void TestVocabulary::entries_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("called"); // 0: nothing
    const struct
    {
        const char *entry;
        int called;
    } rows[] = {
        {"7", 7},   {" 75 ", 75}, {"b7", 7},   {"O75", 75}, {"N 4", 4},   {"G7", 7},   {"g100", 10},
        {"i1", 1},  {"0.5", 0},   {"1.5", 2},  {"2.5", 2},  {"74.5", 74}, {"75.5", 0}, {"75.4", 75},
        {"0.4", 0}, {"0.6", 1},   {"76", 0},   {"0", 0},    {"-3", 0},    {"", 0},     {"B", 0},
        {"BX", 0},  {"B-3", 0},   {"B.9", 1},  {"O76", 0},  {"Z7", 0},    {" N33", 0}, {"7B", 0},
        {"nan", 0}, {"inf", 0},   {"0x10", 0}, {"1e1", 10}, {"1e999", 0}, {"B1e5", 0}, {"\x01", 0},
    };
    for (const auto &row : rows)
        QTest::newRow(row.entry) << row.entry << row.called;
    QTest::newRow("10,000 letters") << QString(10000, u'N') << 0;
    QTest::newRow("other digits behind a letter") << QStringLiteral("B３") << 0;
}

void TestVocabulary::entries()
{
    QFETCH(QString, entry);
    QTEST(board::calledByEntry(entry).value_or(0), "called");
}

QTEST_APPLESS_MAIN(TestVocabulary)
#include "tst_vocabulary.moc"
