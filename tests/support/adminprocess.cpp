#include "support/adminprocess.h"

#include <QCoreApplication>
#include <QProcess>

namespace quorvale::testing {

QString builtProgram(const QString &name)
{
    QString dir = qEnvironmentVariable("QUORVALE_BINARY_DIR");
    if (dir.isEmpty())
        dir = QCoreApplication::applicationDirPath() + QStringLiteral("/..");
    return dir + QStringLiteral("/src/") + name;
}

ProcessRun runAdmin(const QStringList &arguments)
{
    QProcess process;
    process.start(builtProgram(QStringLiteral("quorvale-admin")), arguments);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace quorvale::testing
