#include "tools/configcommand.h"

#include "batch/usageerror.h"
#include "runtime/settings.h"
#include "tools/commandline.h"

#include <QDir>

namespace quorvale {

AdminCommand configCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("config");
    command.synopsis = QStringLiteral("--server S --login L --password P --database D");
    command.summary = QStringLiteral("Write the four database settings the program reads at "
                                     "sign-in (all four are required)");
    command.options = {
        {QStringLiteral("--server S"),
         QStringLiteral("SQL Server host, host\\instance or host,port; sqlite:PATH for an "
                        "embedded database")},
        {QStringLiteral("--login L"), QStringLiteral("SQL Server login name")},
        {QStringLiteral("--password P"),
         QStringLiteral("its password, kept as plain text in the settings file")},
        {QStringLiteral("--database D"), QStringLiteral("the database (initial catalog)")},
    };
    command.example =
        QStringLiteral("quorvale-admin config --server db01,1433 --login report --password secret "
                       "--database wygl");
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const QStringList options = {QStringLiteral("server"), QStringLiteral("login"),
                                     QStringLiteral("password"), QStringLiteral("database")};
        const CommandLine line(arguments, {}, options);
        if (!line.positional().isEmpty())
            throw UsageError(
                QStringLiteral("unexpected argument %1").arg(line.positional().first()));
        line.require(options);
        // A relative embedded path means the folder the command runs in now;
        // the program would read it against its own folder later.
        QString server = line.value(options[0]);
        const QLatin1String embedded("sqlite:");
        if (server.startsWith(embedded, Qt::CaseInsensitive) &&
            QDir::isRelativePath(server.mid(embedded.size())))
            server = embedded + QDir::cleanPath(QDir::current().absoluteFilePath(
                                    server.mid(embedded.size())));
        DatabaseSettings{server, line.value(options[1]), line.value(options[2]),
                         line.value(options[3])}
            .save();
        out << "database settings written for server " << server << " to "
            << DatabaseSettings::location() << '\n';
    };
    return command;
}

} // namespace quorvale
