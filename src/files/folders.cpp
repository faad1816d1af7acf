#include "folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace files {

QString settingsBaseFolder()
{
    QString appData = qEnvironmentVariable("AppData");
    if (!appData.isEmpty())
        return appData;
    QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QDir().mkpath(folder);
    return folder;
}

QString executableName()
{
    const QFileInfo program(QCoreApplication::applicationFilePath());
    const QString name = program.completeBaseName();
    if (!name.isEmpty())
        return name;
    // Qt gives no path that is not valid in the locale's encoding.
    return program.fileName().isEmpty() ? QCoreApplication::applicationName() : program.fileName();
}

} // namespace files
