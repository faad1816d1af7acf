// The settings file: what is read from a profile, and that a write changes one value and no other byte.

#include "mod_ini_Stuff.h"
#include "profile_file.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

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
        QVERIFY(!mod_ini_Stuff::WriteIni("", "Options", "FontSz", "40"));

        const QByteArray noText = "[Options]\nFontSz=\"\xFF\x81 33\"\n";
        setBytes(path, noText);
        QVERIFY(write(read()));
        QCOMPARE(bytesOf(path), noText);
    }

#ifdef Q_OS_UNIX
    void linkPermissionsAndPipe()
    {
        const QString target = folder.filePath("target.ini");
        setBytes(target, "[Options]\nFontSz=33\n");
        QCOMPARE(chmod(qPrintable(target), 0640), 0);
        QCOMPARE(symlink("target.ini", qPrintable(path)), 0);
        QVERIFY(write("40"));
        QCOMPARE(bytesOf(target), QByteArray("[Options]\nFontSz=40\n"));
        QCOMPARE(QFile::permissions(target) & 0x7077,
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        QVERIFY(QFile::remove(target));
        QVERIFY(write("41")); // through a link to nothing
        QVERIFY(QFileInfo(path).isSymLink() && QFileInfo(target).isFile());

        QVERIFY(QFile::remove(target));
        QCOMPARE(mkfifo(qPrintable(target), 0600), 0);
        QVERIFY(read() == "33" && !write("40"));
    }

    /// A program that is killed while it saves leaves the old file or the new one, whole.
    void killedWhileSaving()
    {
        const auto file = [](qsizetype length) {
            return "[Options]\nFontSz=" + QByteArray(length, '7') + "\n; " + QByteArray(100'000, 'x');
        };
        setBytes(path, file(1));
        QElapsedTimer clock;
        clock.start();
        for (const char *value : {"77", "777", "7777", "77777"})
            write(value);
        const auto longestWait = static_cast<quint32>(clock.nsecsElapsed() / 1000);
        int replaced = 0;
        for (int kill = 0; kill < 1000; ++kill) {
            setBytes(path, file(1));
            const pid_t child = fork();
            if (child == 0) {
                for (int save = 2;; ++save)
                    write(QString(1 + save % 50, '7'));
            }
            usleep(QRandomGenerator::global()->bounded(longestWait));
            QCOMPARE(::kill(child, SIGKILL), 0);
            QCOMPARE(waitpid(child, nullptr, 0), child);
            QVERIFY(bytesOf(path) == file(read().size()));
            replaced += read().size() > 1;
        }
        QVERIFY2(replaced > 100, qPrintable(QString::number(replaced)));
    }
#endif

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
