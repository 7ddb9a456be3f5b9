#include "platform/qtdbus/DetachedProgram.h"

#include "platform/posix/PosixSpawning.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

QProcessEnvironment environmentForOthers() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        const bool isOurs = name == "XDG_ACTIVATION_TOKEN"_L1 || name == "DESKTOP_STARTUP_ID"_L1 || name.startsWith("DBUS_STARTER_"_L1) ||
                            name == "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT"_L1 || name.startsWith("ORVANE_"_L1);
        if (isOurs) {
            environment.remove(name);
        }
    }
    return environment;
}

} // namespace

bool startDetached(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setProcessEnvironment(environmentForOthers());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier(PosixPrepareForkedChild);
    return process.startDetached();
}

QString programOfOurs(const QString &name, const QString &folderInBuild) {
    const QString folder = QCoreApplication::applicationDirPath();
    for (const QString &path : {folder + u'/' + name, folder + "/../"_L1 + folderInBuild + u'/' + name}) {
        if (const QFileInfo program(path); program.isFile() && program.isExecutable()) {
            return program.canonicalFilePath();
        }
    }
    return {};
}

} // namespace orvane
