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

const QString section = QStringLiteral("Options");
const QString key = QStringLiteral("FontSz");
const QString fallback = QStringLiteral("33");

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
    void init();
    void profiles_data();
    void profiles();
    void valuesComeBack_data();
    void valuesComeBack();
    void unchangedBytesStay();
    void firstAndSecondRun();
    void longValues();
    void badFiles();
    void linkAndPermissionsStay();
    void failedSaves();

private:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("Vellomir.ini"));
};

void TestSettings::init()
{
    QFile::remove(path);
}

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
    row("header alone", "[Options]", "-", "[Options]\r\nFontSz=40");
    row("new section", "[A]\nX=1", "-", "[A]\nX=1\n[Options]\nFontSz=40");
    row("header never closed", "[Options\nFontSz=1\n", "-", "[Options\nFontSz=1\n[Options]\nFontSz=40\n");
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
    QVERIFY(app::WriteIni(path, section, key, written));
    QCOMPARE(app::ReadIni(path, section, key, fallback), back);
    QCOMPARE(app::ReadIni(path, section, QStringLiteral("AutoCallTm"), QString()), QStringLiteral("10"));
    QCOMPARE(bytesOf(path).count('\n'), 3);
}

void TestSettings::unchangedBytesStay()
{
    const QByteArray content = "[Options]\nFontSz=\"\xFF\x81 33\"\n";
    setBytes(path, content);
    QVERIFY(app::WriteIni(path, section, key, app::ReadIni(path, section, key, fallback)));
    QCOMPARE(bytesOf(path), content);
}

void TestSettings::firstAndSecondRun()
{
    QCOMPARE(app::ReadIni(path, section, key, fallback), fallback);
    QVERIFY(app::WriteIni(path, section, key, QString()));
    QVERIFY(app::WriteIni(path, section, QStringLiteral("AutoCallTm"), QStringLiteral("18")));
    QCOMPARE(bytesOf(path), QByteArray("[Options]\r\nFontSz=\r\nAutoCallTm=18\r\n"));
    QCOMPARE(app::ReadIni(path, section, key, fallback), fallback);
    QCOMPARE(app::ReadIni(path, section, QStringLiteral("AutoCallTm"), QString()), QStringLiteral("18"));
}

void TestSettings::longValues()
{
    const QString value(3000, QChar(0xE9));
    QVERIFY(app::WriteIni(path, section, key, value));
    QCOMPARE(app::ReadIni(path, section, key, fallback), value.left(2047));
    QVERIFY(!app::WriteIni(path, section, key, QString(2'000'000, u'x')));
    QCOMPARE(app::ReadIni(path, section, key, fallback), value.left(2047));
}

/// Read as empty text, not as the default, and never replaced.
void TestSettings::badFiles()
{
    QVERIFY(QDir().mkdir(path));
    QCOMPARE(app::ReadIni(path, section, key, fallback), QString());
    QVERIFY(!app::WriteIni(path, section, key, fallback));
    QVERIFY(QDir().rmdir(path));
    QVERIFY(!app::WriteIni(QString(), section, key, fallback));
    QVERIFY(!app::WriteIni(folder.filePath(QStringLiteral("none/Vellomir.ini")), section, key, fallback));

    setBytes(path, "[Options]\nFontSz=1\n");
    QVERIFY(QFile::resize(path, 1LL << 30));
    QCOMPARE(app::ReadIni(path, section, key, fallback), QString());
    QVERIFY(!app::WriteIni(path, section, key, fallback));
    QCOMPARE(QFileInfo(path).size(), 1LL << 30);
#ifdef Q_OS_UNIX
    QVERIFY(QFile::remove(path));
    QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    QCOMPARE(app::ReadIni(path, section, key, fallback), QString());
    QVERIFY(!app::WriteIni(path, section, key, fallback));
#endif
}

void TestSettings::linkAndPermissionsStay()
{
#ifdef Q_OS_UNIX
    const QString target = folder.filePath(QStringLiteral("target.ini"));
    setBytes(target, "[Options]\nFontSz=33\n");
    const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(target, permissions));
    QCOMPARE(symlink("target.ini", qPrintable(path)), 0);
    QVERIFY(app::WriteIni(path, section, key, QStringLiteral("40")));
    QVERIFY(QFileInfo(path).isSymLink());
    QCOMPARE(bytesOf(target), QByteArray("[Options]\nFontSz=40\n"));
    QCOMPARE(QFile::permissions(target) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
             permissions);
    QVERIFY(QFile::remove(target));
    QVERIFY(app::WriteIni(path, section, key, QStringLiteral("41"))); // through a link to nothing
    QVERIFY(QFileInfo(path).isSymLink() && QFileInfo::exists(target));
#endif
}

/// A disk that takes only part of the file, and a folder that takes none.
void TestSettings::failedSaves()
{
#ifdef Q_OS_UNIX
    const QByteArray content = "[Options]\nFontSz=33\n; " + QByteArray(5000, 'c') + "\n";
    setBytes(path, content);
    QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x6666)));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const bool savedOnFullDisk = app::WriteIni(path, section, key, QStringLiteral("40"));
    setrlimit(RLIMIT_FSIZE, &before);
    QVERIFY(!savedOnFullDisk);
    QCOMPARE(bytesOf(path), content);

    QCOMPARE(chmod(qPrintable(folder.path()), 0555), 0);
    const uid_t user = geteuid();
    const bool asUser = user != 0 || seteuid(65534) == 0; // permissions do not bind root
    const bool savedInReadOnly = app::WriteIni(path, section, key, QStringLiteral("40"));
    QVERIFY(asUser && (user != 0 || seteuid(0) == 0));
    QCOMPARE(chmod(qPrintable(folder.path()), 0700), 0);
    QVERIFY(!savedInReadOnly);
    QCOMPARE(bytesOf(path), content);
    QCOMPARE(QDir(folder.path()).entryList({QStringLiteral("Vellomir*")}, QDir::Files).size(), 1);
#endif
}

QTEST_APPLESS_MAIN(TestSettings)
#include "tst_settings.moc"
