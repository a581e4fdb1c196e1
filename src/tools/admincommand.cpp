#include "tools/admincommand.h"

#include "batch/refusederror.h"
#include "batch/usageerror.h"
#include "runtime/programinfo.h"
#include "runtime/runtimeerror.h"
#include "tools/adminhelp.h"
#include "tools/consoletext.h"

#include <algorithm>

namespace quorvale {

namespace {

QString commandNames(const QList<AdminCommand> &commands)
{
    QStringList names;
    for (const AdminCommand &command : commands)
        names << command.name;
    return names.join(QStringLiteral(", "));
}

bool isHelpOption(const QString &argument)
{
    return argument == QLatin1String("--help") || argument == QLatin1String("-h");
}

// "--version", "--help", "-h" or "help" in place of a command.
bool isToolRequest(const QStringList &arguments)
{
    const QString &first = arguments.first();
    return first == QLatin1String("--version") || isHelpOption(first) ||
           first == QLatin1String("help");
}

// Help for a command, asked for by "COMMAND --help" anywhere among its
// arguments, or by "help COMMAND" or "--help COMMAND".
const AdminCommand *commandAskedAbout(const QList<AdminCommand> &commands,
                                      const QStringList &arguments)
{
    if (arguments.first() == QLatin1String("help") || isHelpOption(arguments.first()))
        return arguments.size() > 1 ? findAdminCommand(commands, arguments.mid(1)) : nullptr;
    const AdminCommand *command = findAdminCommand(commands, arguments);
    if (command && std::any_of(arguments.begin() + 1, arguments.end(), isHelpOption))
        return command;
    return nullptr;
}

} // namespace

const AdminCommand *findAdminCommand(const QList<AdminCommand> &commands,
                                     const QStringList &arguments)
{
    if (arguments.isEmpty())
        return nullptr;
    for (const AdminCommand &command : commands)
        if (command.name == arguments.first())
            return &command;
    return nullptr;
}

AdminCommand::Application adminApplicationFor(const QList<AdminCommand> &commands,
                                              const QStringList &arguments)
{
    const AdminCommand *command = findAdminCommand(commands, arguments);
    if (!command || commandAskedAbout(commands, arguments))
        return AdminCommand::Application::Core;
    return command->application;
}

int runAdminCommand(const QList<AdminCommand> &commands, const QStringList &arguments,
                    QTextStream &out, QTextStream &err)
{
    const QString prefix = QStringLiteral("quorvale-admin: ");
    if (arguments.isEmpty()) {
        err << prefix << "missing command (commands: " << commandNames(commands)
            << "; --help for usage)\n";
        err.flush();
        return AdminStatus::BadArguments;
    }
    if (const AdminCommand *command = commandAskedAbout(commands, arguments)) {
        printCommandHelp(*command, out);
        out.flush();
        return AdminStatus::Ok;
    }
    if (isToolRequest(arguments)) {
        if (arguments.size() > 1) {
            if (arguments.first() == QLatin1String("--version"))
                err << prefix << "--version takes no argument\n";
            else
                err << prefix << "unknown command '" << arguments.at(1)
                    << "' (commands: " << commandNames(commands) << ")\n";
            err.flush();
            return AdminStatus::BadArguments;
        }
        if (arguments.first() == QLatin1String("--version"))
            out << "quorvale-admin " << programVersion() << '\n';
        else
            printAdminHelp(commands, out);
        out.flush();
        return AdminStatus::Ok;
    }
    const AdminCommand *command = findAdminCommand(commands, arguments);
    if (!command) {
        err << prefix << "unknown command '" << printableText(arguments.first())
            << "' (commands: " << commandNames(commands) << ")\n";
        err.flush();
        return AdminStatus::BadArguments;
    }
    int status = AdminStatus::Failed;
    try {
        command->run(arguments.mid(1), out);
        status = AdminStatus::Ok;
    } catch (const UsageError &error) {
        status = AdminStatus::BadArguments;
        err << prefix << command->name << ": " << printableText(error.text())
            << " (usage: quorvale-admin " << command->name << ' ' << command->synopsis << ")\n";
    } catch (const RefusedError &error) {
        status = AdminStatus::Refused;
        err << prefix << command->name << ": " << printableText(error.text()) << '\n';
    } catch (const RuntimeError &error) {
        err << prefix << command->name << ": " << printableText(error.description()) << '\n';
    } catch (const std::exception &error) {
        err << prefix << command->name << ": " << printableText(QString::fromUtf8(error.what()))
            << '\n';
    }
    out.flush();
    err.flush();
    return status;
}

} // namespace quorvale
