#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <functional>

namespace quorvale {

// Exit statuses of quorvale-admin.
namespace AdminStatus {
inline constexpr int Ok = 0;
inline constexpr int BadArguments = 2;
inline constexpr int Refused = 3; // sign-in, office or input refused
inline constexpr int Failed = 4;  // database or file error
} // namespace AdminStatus

// One argument or option of a command as its help lists it.
struct AdminOption {
    QString name; // "FILE", "--force", "--scale N"
    QString text; // what it does, one line
};

// One subcommand. `run` gets the arguments after the command name and
// throws UsageError for a wrong command line, RuntimeError when the work fails.
// Each command carries its own help: the summary for the command list, every
// argument and option, and one complete example.
struct AdminCommand {
    // Which Qt application object the command needs.
    enum class Application { Core, Gui };

    QString name;
    QString synopsis; // the arguments, for usage lines
    QString summary;  // what the command does, one line
    QList<AdminOption> options;
    QString example; // a whole command line, starting with "quorvale-admin"
    Application application = Application::Core;
    std::function<void(const QStringList &arguments, QTextStream &out)> run;
};

// The command named by arguments[0], or nullptr.
const AdminCommand *findAdminCommand(const QList<AdminCommand> &commands,
                                     const QStringList &arguments);

// The application object a command line needs: none beyond Core for help,
// the version or an unknown command.
AdminCommand::Application adminApplicationFor(const QList<AdminCommand> &commands,
                                              const QStringList &arguments);

// Runs the command named by arguments[0] and turns its failure into one line
// on `err` and an exit status. "--help", "--version", "help [COMMAND]" and
// "COMMAND --help" print to `out`. The Qt application object must exist.
int runAdminCommand(const QList<AdminCommand> &commands, const QStringList &arguments,
                    QTextStream &out, QTextStream &err);

} // namespace quorvale
