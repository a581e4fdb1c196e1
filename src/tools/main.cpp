#include "tools/admincommand.h"
#include "tools/backgroundcommand.h"
#include "tools/configcommand.h"
#include "tools/createdbcommand.h"
#include "tools/exportcommand.h"
#include "tools/importcommand.h"
#include "tools/snapshotcommand.h"
#include "tools/sqlcommand.h"

#include <QApplication>
#include <QCoreApplication>
#include <QGuiApplication>
#include <cstdio>
#include <memory>

using namespace quorvale;

// quorvale-admin COMMAND …: a new subcommand is one more entry in this list.
int main(int argc, char **argv)
{
    const QList<AdminCommand> commands = {
        createDbCommand(), configCommand(), makeBackgroundCommand(), exportCommand(),
        sqlCommand(),      importCommand(), snapshotCommand(),
    };

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    // A console tool draws and lays out off screen; it never opens a window.
    const AdminCommand *command = findAdminCommand(commands, arguments);
    const auto kind = command ? command->application : AdminCommand::Application::Core;
    if (kind != AdminCommand::Application::Core && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Keep stderr to the one line a failure prints; platform chatter is not for the console.
    if (kind != AdminCommand::Application::Core)
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
        });
    std::unique_ptr<QCoreApplication> app;
    if (kind == AdminCommand::Application::Widgets)
        app = std::make_unique<QApplication>(argc, argv);
    else if (kind == AdminCommand::Application::Gui)
        app = std::make_unique<QGuiApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);

    arguments = app->arguments().mid(1);
    QTextStream out(stdout);
    QTextStream err(stderr);
    return runAdminCommand(commands, arguments, out, err);
}
