#include "tools/admincommand.h"

#include "runtime/runtimeerror.h"
#include "tools/consoletext.h"
#include "tools/refusederror.h"
#include "tools/usageerror.h"

namespace quorvale {

namespace {

QString commandNames(const QList<AdminCommand> &commands)
{
    QStringList names;
    for (const AdminCommand &command : commands)
        names << command.name;
    return names.join(QStringLiteral(", "));
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
    if (arguments.first() == QLatin1String("--help") ||
        arguments.first() == QLatin1String("help")) {
        for (const AdminCommand &command : commands)
            out << "usage: quorvale-admin " << command.name << ' ' << command.synopsis << '\n';
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
        err << prefix << command->name << ": " << printableText(error.message())
            << " (usage: quorvale-admin " << command->name << ' ' << command->synopsis << ")\n";
    } catch (const RefusedError &error) {
        status = AdminStatus::Refused;
        err << prefix << command->name << ": " << printableText(error.message()) << '\n';
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
