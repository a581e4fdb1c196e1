#include "runtime/console.h"
#include "runtime/tempfilecleanup.h"
#include "tools/admincommands.h"
#include "tools/consoletext.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <cstdio>
#include <memory>

using namespace quorvale;

// quorvale-admin COMMAND …
int main(int argc, char **argv)
{
    const QList<AdminCommand> commands = adminCommands();
    useUtf8Console();

    int invalid = -1;
    QStringList arguments = consoleArguments(argc, argv, invalid);
    if (invalid > 0) {
        std::fprintf(stderr, "quorvale-admin: argument %d is not valid UTF-8 (%s); file names and "
                             "values must be UTF-8\n",
                     invalid, printableText(arguments.at(invalid - 1)).toUtf8().constData());
        return AdminStatus::BadArguments;
    }
    installCleanupOnSignals();
    // A console tool draws and lays out off screen; it never opens a window.
    const auto kind = adminApplicationFor(commands, arguments);
    if (kind != AdminCommand::Application::Core)
        useOffscreenPlatform();
    // Keep stderr to the one line a failure prints; platform chatter is not for the console.
    if (kind != AdminCommand::Application::Core)
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::fprintf(stderr, "%s\n", text.toUtf8().constData());
        });
    std::unique_ptr<QCoreApplication> app;
    if (kind == AdminCommand::Application::Gui)
        app = std::make_unique<QGuiApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);

    QTextStream out(stdout);
    QTextStream err(stderr);
    return runAdminCommand(commands, arguments, out, err);
}
