// What is read from files that others write: the settings, of which a write changes one value and no other
// byte, and the help text.

#include "mod_ini_Stuff.h"
#include "profile_file.h"
#include "text_file.h"

#include <QtTest>

#include <fstream>

using namespace mod_ini_Stuff;

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(path); }

    /// Each row reads Ky of section O ("-": it is not there), then sets it to 4.
    void profiles()
    {
        const std::array<QByteArray, 3> rows[] = {
            {"\xEF\xBB\xBF", "-", "\xEF\xBB\xBF[O]\r\nKy=4\r\n"},
            {"\xEF\xBB\xBF [ o ] \n\tkY\t= ' 3\"' \r\n", " 3\"", "\xEF\xBB\xBF [ o ] \n\tkY\t= 4 \r\n"},
            {"Ky=1\n[O]\n ;Ky=1\n;[O]\nKy='a=b;c\"", "'a=b;c\"", "Ky=1\n[O]\n ;Ky=1\n;[O]\nKy=4"},
            {"[O\n[O]\n[B\nKy=\"\nKy=2\n[O]\nKy=3", "\"", "[O\n[O]\n[B\nKy=4\nKy=2\n[O]\nKy=3"},
            {"[O2]\nKy=1\n[O]\nKy2=2\nK=2\n[O]\nKy=3", "-", "[O2]\nKy=1\n[O]\nKy2=2\nK=2\nKy=4\n[O]\nKy=3"},
            {"[O]\r\nX=1\r\n\r\n \r\n[B]\r\n", "-", "[O]\r\nX=1\r\nKy=4\r\n\r\n \r\n[B]\r\n"},
            {"\n[O]\nX=1", "-", "\n[O]\nX=1\nKy=4"},
            {"[O]\nKy=\"\"\nX=1", "", "[O]\nKy=4\nX=1"},
            {"[A]\nX=1\n\n ", "-", "[A]\nX=1\n\n \n[O]\nKy=4"}};
        for (const auto &[before, value, after] : rows) {
            QCOMPARE(base::findValue(before, "O", "Ky").value_or("-"), value);
            QCOMPARE(base::withValue(before, "O", "Ky", "4"), after);
        }
    }

    void runs()
    {
        QVERIFY(read() == "33" && write("") && WriteIni(path, "O", "X", "18"));
        QCOMPARE(base::readTextFile(path), "[O]\r\nKy=\r\nX=18\r\n");
        QCOMPARE(read() + read("X"), "3318"); // an empty value counts as none
        QVERIFY(write(" \"é€😀\r\n[O]\nX=9\" "));
        QCOMPARE(read() + read("X"), " \"é€😀  [O] X=9\" 18");
        QVERIFY(write(QString(3000, QChar(0xE9))) && !write(QString(2'000'000, 'x')));
        QCOMPARE(read(), QString(2047, QChar(0xE9)));
        std::ofstream(qPrintable(path)) << "[O]\nKy=\"\xFF\x81 33\"\n"; // no text
        QVERIFY(write(read()));
        QCOMPARE(base::readBytes(path, 99), "[O]\nKy=\"\xFF\x81 33\"\n");
    }

    /// A save is seen whole or not at all: who has the file open keeps the old one. Links and permissions
    /// stay.
    void replaced()
    {
        const QString target = folder.filePath("target.ini");
        std::ofstream(qPrintable(target)) << "[O]\nKy=33\n";
        QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const auto permissions = QFile::permissions(target);
        QFile reader(target);
        QVERIFY(QFile::link("target.ini", path) && reader.open(QIODevice::ReadOnly) && write("40"));
        QCOMPARE(reader.readAll() + *base::readBytes(target, 99), "[O]\nKy=33\n[O]\nKy=40\n");
        QCOMPARE(QFile::permissions(target), permissions);
        QVERIFY(QFile::remove(target) && write("41")); // through a link to nothing
        QVERIFY(QFileInfo(path).isSymLink() && QFile::remove(target));
        QVERIFY(QDir().mkdir(target) && read() == "33" && !write("40") && !base::readTextFile(target));
        QVERIFY(!base::readTextFile("/proc/self/mem"));
    }

    void texts()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"\xEF\xBB\xBF\xC3\xA9", "é"},
            {QByteArray("\xFF\xFE\xE9\x00\xAC\x20", 6), "é€"},
            {QByteArray("\xFE\xFF\x00\xE9\x20\xAC", 6), "é€"},
            {"caf\xE9 \x80 \x93quoted\x94 \xFF", "café € “quoted” ÿ"},
            {"xy" + QByteArray("€\n").repeated(1'000'000), "xy" + QString("€\n").repeated(1'000'000)}};
        for (const auto &[bytes, text] : rows) {
            std::ofstream(qPrintable(path)) << bytes.toStdString();
            QCOMPARE(base::readTextFile(path), text);
            QCOMPARE(write("4"), bytes[0] != '\xFF' && bytes[0] != '\xFE' && bytes.size() < 1'048'576);
        }
    }

private:
    QString read(const QString &key = "Ky") { return ReadIni(path, "O", key, "33"); }
    bool write(const QString &value) { return WriteIni(path, "O", "Ky", value); }

    QTemporaryDir folder;
    const QString path = folder.filePath("Vellomir.ini");
};

QTEST_APPLESS_MAIN(TestSettings)
#include "tst_settings.moc"
