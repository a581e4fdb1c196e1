#include "tools/snapshotcommand.h"

#include "batch/usageerror.h"
#include "db/odbcconnectionstring.h"
#include "dbtools/configureddatabase.h"
#include "dbtools/snapshot.h"
#include "runtime/runtimeerror.h"
#include "tools/commandline.h"
#include "tools/consoletext.h"

#include <QElapsedTimer>
#include <cstdio>
#include <unistd.h>

namespace quorvale {

namespace {

ConnectionPtr openSource(const CommandLine &line)
{
    if (!line.isSet(QStringLiteral("from"))) {
        ConnectionPtr configured = openConfiguredDatabase();
        if (configured->isEmbedded())
            throw RuntimeError(ErrorNumber::DatabaseError,
                               QStringLiteral("the configured database is an embedded file "
                                              "already; name a server with --from"));
        return configured;
    }
    const QString odbc = line.value(QStringLiteral("from"));
    if (odbc.trimmed().isEmpty())
        throw UsageError(QStringLiteral("--from is empty"));
    auto source = std::make_shared<Connection>();
    source->ConnectionString =
        Connection::odbcDataSourceConnectionString(streamingOdbcConnectionString(odbc));
    source->ConnectionTimeout = 30;
    source->Open();
    return source;
}

// Progress goes to a terminal only, one line per table.
TableCopyProgress terminalProgress()
{
    if (!isatty(STDERR_FILENO))
        return {};
    return [timer = QElapsedTimer()](const QString &table, qint64 rows, bool done) mutable {
        if (!timer.isValid())
            timer.start();
        std::fprintf(stderr, "\r%s: %lld rows (%.1f s)\x1b[K%s", table.toUtf8().constData(),
                     static_cast<long long>(rows), timer.elapsed() / 1000.0, done ? "\n" : "");
        std::fflush(stderr);
    };
}

void printCounts(QTextStream &out, const QList<TableCopyCount> &counts)
{
    const QString head = QStringLiteral("table");
    int width = displayWidth(head);
    for (const TableCopyCount &c : counts)
        width = qMax(width, displayWidth(c.table));
    const auto line = [&](const QString &table, const QString &read, const QString &written,
                          const QString &mark) {
        out << table << QString(width - displayWidth(table), QLatin1Char(' '))
            << read.rightJustified(12) << written.rightJustified(12) << mark << '\n';
    };
    line(head, QStringLiteral("read"), QStringLiteral("written"), {});
    qint64 read = 0;
    qint64 written = 0;
    for (const TableCopyCount &c : counts) {
        line(c.table, QString::number(c.read), QString::number(c.written),
             c.read == c.written ? QString() : QStringLiteral("  DIFFERENT"));
        read += c.read;
        written += c.written;
    }
    line(QStringLiteral("total"), QString::number(read), QString::number(written), {});
    out.flush();
}

} // namespace

AdminCommand snapshotCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("snapshot");
    command.synopsis = QStringLiteral("--to FILE [--from ODBC-CONNECTION-STRING] [--force]");
    command.summary = QStringLiteral(
        "Copy the twenty tables of a server into a new embedded database file");
    command.options = {
        {QStringLiteral("--to FILE"), QStringLiteral("the new embedded database file")},
        {QStringLiteral("--from ODBC-CONNECTION-STRING"),
         QStringLiteral("the server to read (default: the configured one)")},
        {QStringLiteral("--force"), QStringLiteral("replace FILE if it exists")},
    };
    command.example = QStringLiteral("quorvale-admin snapshot --to 2026-11.db");
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const CommandLine line(arguments, {QStringLiteral("force")},
                               {QStringLiteral("to"), QStringLiteral("from")});
        if (!line.positional().isEmpty())
            throw UsageError(
                QStringLiteral("unexpected argument %1").arg(line.positional().first()));
        line.require({QStringLiteral("to")});
        const QString path = line.value(QStringLiteral("to"));
        if (path.isEmpty())
            throw UsageError(QStringLiteral("--to is empty"));
        const ConnectionPtr source = openSource(line);
        QElapsedTimer timer;
        timer.start();
        const qint64 rows = writeSnapshot(
            source, path, line.isSet(QStringLiteral("force")), terminalProgress(),
            [&out](const QList<TableCopyCount> &counts) { printCounts(out, counts); });
        out << path << ": " << rows << " rows copied in "
            << QString::number(double(timer.elapsed()) / 1000.0, 'f', 1) << " s\n";
    };
    return command;
}

} // namespace quorvale
