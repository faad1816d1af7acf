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
    // A path that is no text in the system's encoding is not known.
    return program.fileName().isEmpty() ? QCoreApplication::applicationName() : program.fileName();
}

} // namespace files
