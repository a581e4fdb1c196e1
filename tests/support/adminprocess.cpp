#include "support/adminprocess.h"

#include <QCoreApplication>
#include <QElapsedTimer>
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

bool waitForErrorText(QProcess &process, const QString &text, QString &seen)
{
    QElapsedTimer clock;
    clock.start();
    while (!seen.contains(text)) {
        if (process.state() == QProcess::NotRunning || clock.elapsed() > 120000)
            return false;
        process.waitForReadyRead(1000);
        seen += QString::fromUtf8(process.readAllStandardError());
    }
    return true;
}

} // namespace quorvale::testing
