// The settings file: what is read from a profile, and that a write changes one value and no other byte.

#include "app/mod_ini_Stuff.h"
#include "platform/profile_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

const QString options = QStringLiteral("Options");
const QString fontSize = QStringLiteral("FontSz");
const QString interval = QStringLiteral("AutoCallTm");

QString read(const QString &path, const QString &key = fontSize)
{
    return app::ReadIni(path, options, key, QStringLiteral("33"));
}

bool write(const QString &path, const QString &value, const QString &key = fontSize)
{
    return app::WriteIni(path, options, key, value);
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void setBytes(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(path); }
    void profiles_data();
    void profiles();
    void valuesComeBack_data();
    void valuesComeBack();
    void bytesThatAreNoText();
    void runs();
    void badFiles();
    void linkAndPermissions();
    void fullDisk();
    void readOnlyFolder();

private:
    QString at(const char *name) const { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
    const QString path = at("Vellomir.ini");
};

/// Each row reads FontSz of Options ("-": it is not there), then sets it to 40.
void TestSettings::profiles_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, const char *read,
                        const QByteArray &after) {
        QTest::newRow(name) << before << QByteArray(read) << after;
    };
    row("new file", "", "-", "[Options]\r\nFontSz=40\r\n");
    row("plain", "[Options]\r\nFontSz=33\r\nAutoCallTm=10\r\n", "33",
        "[Options]\r\nFontSz=40\r\nAutoCallTm=10\r\n");
    row("any case", "[oPTIONS]\nfONTsZ=33\n", "33", "[oPTIONS]\nfONTsZ=40\n");
    row("blanks", " [ Options ] \n\tFontSz\t=  33 \t\r\n", "33", " [ Options ] \n\tFontSz\t=  40 \t\r\n");
    row("empty value", "[Options]\nFontSz=\nB=2", "", "[Options]\nFontSz=40\nB=2");
    row("quotes", "[Options]\nFontSz=\" 33'\"\n", " 33'", "[Options]\nFontSz=40\n");
    row("quotes that do not match", "[Options]\nFontSz='33\"\n", "'33\"", "[Options]\nFontSz=40\n");
    row("one quote", "[Options]\nFontSz=\"\n", "\"", "[Options]\nFontSz=40\n");
    row("equals and semicolon in a value", "[Options]\nFontSz=a=b;c\n", "a=b;c", "[Options]\nFontSz=40\n");
    row("comment is no key", "[Options]\n ;FontSz=1\n;[Options]\nFontSz=2", "2",
        "[Options]\n ;FontSz=1\n;[Options]\nFontSz=40");
    row("key above the sections", "FontSz=1\n[Options]\n", "-", "FontSz=1\n[Options]\nFontSz=40\n");
    row("key of another section", "[A]\nFontSz=1\n[Options]\nX=2\n[B]\nFontSz=3\n", "-",
        "[A]\nFontSz=1\n[Options]\nX=2\nFontSz=40\n[B]\nFontSz=3\n");
    row("first section, first key", "[Options]\nFontSz=1\nFontSz=2\n[Options]\nFontSz=3\n", "1",
        "[Options]\nFontSz=40\nFontSz=2\n[Options]\nFontSz=3\n");
    row("key only in the second section", "[Options]\n[Options]\nFontSz=3\n", "-",
        "[Options]\nFontSz=40\n[Options]\nFontSz=3\n");
    row("longer and shorter names", "[Options2]\nFontSz=1\n[Options]\nFontSz2=2\nFont=3\nFontSz\n", "-",
        "[Options2]\nFontSz=1\n[Options]\nFontSz2=2\nFont=3\nFontSz\nFontSz=40\n");
    row("added before blank lines", "[Options]\r\nX=1\r\n\r\n \r\n[B]\r\n", "-",
        "[Options]\r\nX=1\r\nFontSz=40\r\n\r\n \r\n[B]\r\n");
    row("no final line end", "[Options]\nX=1", "-", "[Options]\nX=1\nFontSz=40");
    row("line feed first", "\n[Options]\n", "-", "\n[Options]\nFontSz=40\n");
    row("header alone", "[Options]", "-", "[Options]\r\nFontSz=40");
    row("new section", "[A]\nX=1\n\n ", "-", "[A]\nX=1\n\n \n[Options]\nFontSz=40");
    row("header never closed", "[Options\n[Options]\n[B\nFontSz=1\n", "1",
        "[Options\n[Options]\n[B\nFontSz=40\n");
    row("byte order mark", "\xEF\xBB\xBF[Options]\nFontSz=33\n", "33", "\xEF\xBB\xBF[Options]\nFontSz=40\n");
    row("byte order mark alone", "\xEF\xBB\xBF", "-", "\xEF\xBB\xBF[Options]\r\nFontSz=40\r\n");
    row("any byte", QByteArrayLiteral("\0\xFF=\x81\n[Options]\n\0\x80\nFontSz=\xE9\n\0\x1A"), "\xE9",
        QByteArrayLiteral("\0\xFF=\x81\n[Options]\n\0\x80\nFontSz=40\n\0\x1A"));
}

void TestSettings::profiles()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, read);
    QFETCH(QByteArray, after);
    QCOMPARE(platform::findValue(before, "Options", "FontSz").value_or("-"), read);
    QCOMPARE(platform::withValue(before, "Options", "FontSz", "40"), after);
}

void TestSettings::valuesComeBack_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("back");
    for (const char *same : {"abc", " 40 ", "\t", "\"40\"", "'", "''", "\"", ";x", "[B]", "a=b", "é€😀"})
        QTest::newRow(same) << QString::fromUtf8(same) << QString::fromUtf8(same);
    QTest::newRow("line breaks") << "1\r\n[Options]\nAutoCallTm=9\n"
                                 << "1  [Options] AutoCallTm=9 ";
    const QString half(QChar(0xD83D));
    QTest::newRow("half a character") << half << QString::fromLocal8Bit(half.toLocal8Bit());
}

void TestSettings::valuesComeBack()
{
    QFETCH(QString, written);
    QFETCH(QString, back);
    setBytes(path, "[Options]\nFontSz=33\nAutoCallTm=10\n");
    QVERIFY(write(path, written));
    QCOMPARE(read(path), back);
    QCOMPARE(read(path, interval), QStringLiteral("10"));
    QCOMPARE(bytesOf(path).count('\n'), 3);
}

void TestSettings::bytesThatAreNoText()
{
    const QByteArray content = "[Options]\nFontSz=\"\xFF\x81 33\"\n";
    setBytes(path, content);
    QVERIFY(write(path, read(path)));
    QCOMPARE(bytesOf(path), content);
}

void TestSettings::runs()
{
    QCOMPARE(read(path), QStringLiteral("33"));
    QVERIFY(write(path, QString()));
    QVERIFY(write(path, QStringLiteral("18"), interval));
    QCOMPARE(bytesOf(path), QByteArray("[Options]\r\nFontSz=\r\nAutoCallTm=18\r\n"));
    QCOMPARE(read(path), QStringLiteral("33"));
    QCOMPARE(read(path, interval), QStringLiteral("18"));

    QVERIFY(write(path, QString(3000, QChar(0xE9))));
    QVERIFY(!write(path, QString(2'000'000, u'x')));
    QCOMPARE(read(path), QString(2047, QChar(0xE9)));
}

/// Read as empty text, not as the default, and never replaced.
void TestSettings::badFiles()
{
    QVERIFY(QDir().mkdir(at("folder")));
    setBytes(at("huge"), "[Options]\nFontSz=1\n");
    QVERIFY(QFile::resize(at("huge"), 1LL << 30));
    QStringList bad{at("folder"), at("huge")};
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(qPrintable(at("pipe")), 0600), 0);
    bad << at("pipe");
#endif
    for (const QString &file : std::as_const(bad)) {
        QCOMPARE(read(file), QString());
        QVERIFY(!write(file, QStringLiteral("40")));
    }
    QCOMPARE(QFileInfo(at("huge")).size(), 1LL << 30);
    QVERIFY(!write(QString(), QStringLiteral("40")));
    QVERIFY(!write(at("none/Vellomir.ini"), QStringLiteral("40")));
}

void TestSettings::linkAndPermissions()
{
#ifdef Q_OS_UNIX
    const QString target = at("target.ini");
    setBytes(target, "[Options]\nFontSz=33\n");
    QCOMPARE(chmod(qPrintable(target), 0640), 0);
    QCOMPARE(symlink("target.ini", qPrintable(path)), 0);
    QVERIFY(write(path, QStringLiteral("40")));
    QCOMPARE(bytesOf(target), QByteArray("[Options]\nFontSz=40\n"));
    struct stat status
    {
    };
    QCOMPARE(stat(qPrintable(target), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0640U);
    QVERIFY(QFile::remove(target));
    QVERIFY(write(path, QStringLiteral("41"))); // through a link to nothing
    QVERIFY(QFileInfo(path).isSymLink() && QFileInfo(target).isFile());
#endif
}

void TestSettings::fullDisk()
{
#ifdef Q_OS_UNIX
    const QByteArray content = "[Options]\nFontSz=33\n; " + QByteArray(5000, 'c') + "\n";
    setBytes(path, content);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit full{1000, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const bool saved = write(path, QStringLiteral("40"));
    setrlimit(RLIMIT_FSIZE, &limit);
    QVERIFY(!saved);
    QCOMPARE(bytesOf(path), content);
    QCOMPARE(QDir(folder.path()).entryList({QStringLiteral("Vellomir*")}).size(), 1); // nothing left beside
#endif
}

void TestSettings::readOnlyFolder()
{
#ifdef Q_OS_UNIX
    setBytes(path, "[Options]\nFontSz=33\n");
    QCOMPARE(chmod(qPrintable(path), 0666), 0);
    QCOMPARE(chmod(qPrintable(folder.path()), 0555), 0);
    const bool root = geteuid() == 0; // whom permissions do not bind
    QVERIFY(!root || seteuid(65534) == 0);
    const QString before = read(path);
    const bool saved = write(path, QStringLiteral("40"));
    QVERIFY(!root || seteuid(0) == 0);
    QCOMPARE(chmod(qPrintable(folder.path()), 0700), 0);
    QCOMPARE(before, QStringLiteral("33"));
    QVERIFY(!saved);
    QCOMPARE(read(path), QStringLiteral("33"));
#endif
}

QTEST_APPLESS_MAIN(TestSettings)
#include "tst_settings.moc"
