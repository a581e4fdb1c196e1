#include "tools/configcommand.h"

#include "runtime/settings.h"
#include "tools/commandline.h"
#include "tools/usageerror.h"

namespace quorvale {

AdminCommand configCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("config");
    command.synopsis = QStringLiteral("--server S --login L --password P --database D");
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const QStringList options = {QStringLiteral("server"), QStringLiteral("login"),
                                     QStringLiteral("password"), QStringLiteral("database")};
        const CommandLine line(arguments, {}, options);
        if (!line.positional().isEmpty())
            throw UsageError(
                QStringLiteral("unexpected argument %1").arg(line.positional().first()));
        line.require(options);
        const QString app = QStringLiteral("Quorvale");
        const QString section = QStringLiteral("DBConfig");
        SettingsStore::SaveSetting(app, section, QStringLiteral("Svr"), line.value(options[0]));
        SettingsStore::SaveSetting(app, section, QStringLiteral("UID"), line.value(options[1]));
        SettingsStore::SaveSetting(app, section, QStringLiteral("PWD"), line.value(options[2]));
        SettingsStore::SaveSetting(app, section, QStringLiteral("DBname"), line.value(options[3]));
        out << "database settings written for server " << line.value(options[0]) << '\n';
    };
    return command;
}

} // namespace quorvale
