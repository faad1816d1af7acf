// What is read from files that others write: the settings, of which a write changes one value and no other
// byte, and the help text.

#include "mod_ini_Stuff.h"
#include "profile_file.h"
#include "text_file.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(path); }

    /// Each row reads FontSz of Options ("-": it is not there), then sets it to 40.
    void profiles()
    {
        const std::array<QByteArray, 3> rows[] = {
            {"", "-", "[Options]\r\nFontSz=40\r\n"},
            {" [ oPTIONS ] \n\tfONTsZ\t=  33 \t\r\n", "33", " [ oPTIONS ] \n\tfONTsZ\t=  40 \t\r\n"},
            {"[Options]\nFontSz=\nB=2", "", "[Options]\nFontSz=40\nB=2"},
            {"[Options]\nFontSz=\" 33'\"\n", " 33'", "[Options]\nFontSz=40\n"},
            {"[Options]\nFontSz='33\"\n", "'33\"", "[Options]\nFontSz=40\n"},
            {"[Options]\nFontSz=\"\n", "\"", "[Options]\nFontSz=40\n"},
            {"[Options]\nFontSz=a=b;c\n", "a=b;c", "[Options]\nFontSz=40\n"},
            {"[Options]\n ;FontSz=1\n;[Options]\nFontSz=2", "2",
             "[Options]\n ;FontSz=1\n;[Options]\nFontSz=40"},
            {"FontSz=1\n[Options]\nX=2\n[B]\nFontSz=3\n", "-",
             "FontSz=1\n[Options]\nX=2\nFontSz=40\n[B]\nFontSz=3\n"},
            {"[Options]\nFontSz=1\nFontSz=2\n[Options]\nFontSz=3", "1",
             "[Options]\nFontSz=40\nFontSz=2\n[Options]\nFontSz=3"},
            {"[Options]\n[Options]\nFontSz=3\n", "-", "[Options]\nFontSz=40\n[Options]\nFontSz=3\n"},
            {"[Options2]\nFontSz=1\n[Options]\nFontSz2=2\nFont=3\n", "-",
             "[Options2]\nFontSz=1\n[Options]\nFontSz2=2\nFont=3\nFontSz=40\n"},
            {"[Options]\r\nX=1\r\n\r\n \r\n[B]\r\n", "-",
             "[Options]\r\nX=1\r\nFontSz=40\r\n\r\n \r\n[B]\r\n"},
            {"\n[Options]\nX=1", "-", "\n[Options]\nX=1\nFontSz=40"},
            {"[A]\nX=1\n\n ", "-", "[A]\nX=1\n\n \n[Options]\nFontSz=40"},
            {"[Options\n[Options]\n[B\nFontSz=1\n", "1", "[Options\n[Options]\n[B\nFontSz=40\n"},
            {"\xEF\xBB\xBF[Options]\nFontSz=33\n", "33", "\xEF\xBB\xBF[Options]\nFontSz=40\n"},
            {"\xEF\xBB\xBF", "-", "\xEF\xBB\xBF[Options]\r\nFontSz=40\r\n"},
        };
        for (const auto &[before, value, after] : rows) {
            QCOMPARE(files::findValue(before, "Options", "FontSz").value_or("-"), value);
            QCOMPARE(files::withValue(before, "Options", "FontSz", "40"), after);
        }
    }

    void runs()
    {
        QCOMPARE(read(), "33");
        QVERIFY(write("") && write("18", "AutoCallTm"));
        QCOMPARE(bytesOf(path), QByteArray("[Options]\r\nFontSz=\r\nAutoCallTm=18\r\n"));
        QVERIFY(read() == "33" && read("AutoCallTm") == "18"); // an empty value counts as none
        QVERIFY(write(" \"é€😀\" "));
        QCOMPARE(read(), " \"é€😀\" ");
        QVERIFY(write("1\r\n[Options]\nAutoCallTm=9\n"));
        QVERIFY(read() == "1  [Options] AutoCallTm=9 " && read("AutoCallTm") == "18");
        QVERIFY(write(QString(3000, QChar(0xE9))));
        QVERIFY(!write(QString(2'000'000, 'x')));
        QCOMPARE(read(), QString(2047, QChar(0xE9)));
        const QByteArray noText = "[Options]\nFontSz=\"\xFF\x81 33\"\n";
        setBytes(path, noText);
        QVERIFY(write(read()));
        QCOMPARE(bytesOf(path), noText);
    }

    /// A save is seen whole or not at all: who has the file open keeps the old one. Links and permissions
    /// stay.
    void replaced()
    {
        const QString target = folder.filePath("target.ini");
        const QByteArray before = "[Options]\nFontSz=33\n";
        setBytes(target, before);
        QCOMPARE(chmod(qPrintable(target), 0640), 0);
        QCOMPARE(symlink("target.ini", qPrintable(path)), 0);
        QFile reader(target);
        QVERIFY(reader.open(QIODevice::ReadOnly) && write("40"));
        QCOMPARE(reader.readAll(), before);
        QCOMPARE(bytesOf(target), QByteArray("[Options]\nFontSz=40\n"));
        QCOMPARE(QFile::permissions(target) & 0x7077,
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        QVERIFY(QFile::remove(target));
        QVERIFY(write("41")); // through a link to nothing
        QVERIFY(QFileInfo(path).isSymLink() && QFileInfo(target).isFile());
        QVERIFY(QFile::remove(target));
        QCOMPARE(mkfifo(qPrintable(target), 0600), 0); // a pipe would never answer
        QVERIFY(read() == "33" && !write("40") && !files::readTextFile(target));
        QVERIFY(!files::readTextFile(folder.path()) && !files::readTextFile("/proc/self/mem"));
    }

    void texts()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"caf\xC3\xA9 \xE2\x82\xAC", "café €"},
            {"\xEF\xBB\xBF\xC3\xA9", "é"},
            {QByteArray("\xFF\xFE\xE9\x00\xAC\x20", 6), "é€"},
            {QByteArray("\xFE\xFF\x00\xE9\x20\xAC", 6), "é€"},
            {"caf\xE9 \x80 \x93quoted\x94 \xFF", "café € “quoted” ÿ"},
        };
        for (const auto &[bytes, text] : rows) {
            setBytes(path, bytes);
            QCOMPARE(files::readTextFile(path).value_or("none"), text);
        }
        setBytes(path, "xy" + QByteArray("€\n").repeated(1'000'000)); // megabytes, unchanged
        QCOMPARE(files::readTextFile(path).value_or("none"), "xy" + QString("€\n").repeated(1'000'000));
    }

private:
    QString read(const QString &key = "FontSz") const
    {
        return mod_ini_Stuff::ReadIni(path, "Options", key, "33");
    }
    bool write(const QString &value, const QString &key = "FontSz") const
    {
        return mod_ini_Stuff::WriteIni(path, "Options", key, value);
    }
    static QByteArray bytesOf(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
    }
    static void setBytes(const QString &name, const QByteArray &content)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    QTemporaryDir folder;
    const QString path = folder.filePath("Vellomir.ini");
};

QTEST_APPLESS_MAIN(TestSettings)
#include "tst_settings.moc"
