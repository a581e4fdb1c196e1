#include "tools/importcommand.h"

#include "tools/commandline.h"
#include "tools/configureddatabase.h"
#include "tools/csvimport.h"

namespace quorvale {

AdminCommand importCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("import");
    command.synopsis = QStringLiteral("--table NAME FILE.csv");
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const CommandLine line(arguments, {}, {QStringLiteral("table")});
        line.require({QStringLiteral("table")});
        const QString path = line.onlyPositional(QStringLiteral("FILE.csv"));
        const ConnectionPtr connection = openConfiguredDatabase();
        const qint64 rows = importCsv(*connection, line.value(QStringLiteral("table")), path);
        out << rows << (rows == 1 ? " row" : " rows") << " imported into "
            << line.value(QStringLiteral("table")) << '\n';
    };
    return command;
}

} // namespace quorvale
