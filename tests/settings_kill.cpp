// A program that is killed while it saves its settings leaves the old file or the new one, whole. A child
// saves over and over and is killed at a random moment, a thousand times.

#include "platform/profile_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <chrono>
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

void tell(char mark)
{
    std::putchar(mark);
    std::fflush(stdout);
}

/// Saves for ever; tells "(" before and ")" after each save. Returns only when a save fails.
int saveOverAndOver(const QString &path)
{
    for (int save = 1;; ++save) {
        tell('(');
        if (!platform::writeProfileString(path, QStringLiteral("Options"), QStringLiteral("FontSz"),
                                          valueOf(save)))
            return 1;
        tell(')');
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

bool replaceBytes(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication program(argc, argv);
    if (argc == 2)
        return saveOverAndOver(program.arguments().at(1));

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Vellomir.ini"));
    int broken = 0, inSave = 0, saves = 0;
    qint64 bytesLost = 0;
    for (int kill = 0; kill < kills; ++kill) {
        if (!replaceBytes(path, fileAfter(0)))
            return 1;
        const QByteArray told = runAndKill(path);
        const int done = static_cast<int>(told.count(')'));
        QFile file(path);
        const QByteArray found = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        if (told.isEmpty() || (found != fileAfter(done) && found != fileAfter(done + 1))) {
            ++broken;
            bytesLost += qMax<qint64>(0, fileAfter(done).size() - found.size());
        }
        inSave += told.endsWith('(');
        saves += done;
    }
    std::printf("%d kills, %d of them during a save (%d saves done): %d files broken, %lld bytes lost\n",
                kills, inSave, saves, broken, static_cast<long long>(bytesLost));
    return broken == 0 && inSave > 0 ? 0 : 1;
}
