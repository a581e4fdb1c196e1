#include "tools/importcommand.h"

#include "dbtools/configureddatabase.h"
#include "dbtools/csvimport.h"
#include "tools/commandline.h"

namespace quorvale {

AdminCommand importCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("import");
    command.synopsis = QStringLiteral("--table NAME FILE.csv");
    command.summary = QStringLiteral(
        "Load a CSV file into a table of the embedded database, all or nothing");
    command.options = {
        {QStringLiteral("--table NAME"), QStringLiteral("the table the rows go into")},
        {QStringLiteral("FILE.csv"),
         QStringLiteral("UTF-8 with a header row naming columns of the table")},
    };
    command.example = QStringLiteral("quorvale-admin import --table 业主表 业主表.csv");
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
