// A program that is killed while it saves its settings leaves the old file or the new one, whole. A child
// saves over and over and is killed at a random moment, a thousand times.

#include "platform/profile_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cstdio>
#include <thread>

namespace {

constexpr int kills = 1000;
constexpr int longestWait = 6000; // microseconds

QString valueOf(int save)
{
    return QString::number(save).repeated(1 + save % 3);
}

QByteArray fileAfter(int save)
{
    static const QByteArray rest = "\n[Other]\n; " + QByteArray(100'000, 'x') + "\n";
    return "[Options]\nFontSz=" + valueOf(save).toLatin1() + rest;
}

/// Saves for ever; tells "(" before and ")" after each save. Returns only when a save fails.
int saveOverAndOver(const QString &path)
{
    std::setbuf(stdout, nullptr);
    for (int save = 1;; ++save) {
        std::putchar('(');
        if (!platform::writeProfileString(path, "Options", "FontSz", valueOf(save)))
            return 1;
        std::putchar(')');
    }
}

/// What the child told until it was killed.
QByteArray runAndKill(const QString &path)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {path});
    if (!child.waitForReadyRead())
        return {};
    std::this_thread::sleep_for(std::chrono::microseconds(QRandomGenerator::global()->bounded(longestWait)));
    child.kill();
    child.waitForFinished();
    return child.exitStatus() == QProcess::CrashExit ? child.readAllStandardOutput() : QByteArray();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication program(argc, argv);
    if (argc == 2)
        return saveOverAndOver(program.arguments().at(1));

    const QTemporaryDir folder;
    QFile file(folder.filePath("Vellomir.ini"));
    int broken = 0, inSave = 0, saves = 0;
    for (int kill = 0; kill < kills; ++kill) {
        if (!file.open(QIODevice::WriteOnly) || file.write(fileAfter(0)) < 0)
            return 1;
        file.close();
        const QByteArray told = runAndKill(file.fileName());
        const int done = static_cast<int>(told.count(')'));
        const QByteArray found = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        file.close();
        broken += told.isEmpty() || (found != fileAfter(done) && found != fileAfter(done + 1));
        inSave += told.endsWith('(');
        saves += done;
    }
    std::printf("%d kills, %d of them during a save (%d saves done): %d files broken\n", kills, inSave, saves,
                broken);
    return broken == 0 && inSave > 0 ? 0 : 1;
}
