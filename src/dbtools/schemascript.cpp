#include "dbtools/schemascript.h"

#include "db/connection.h"
#include "runtime/runtimeerror.h"
#include "tsql/tsqlbatches.h"

#include <QFile>

namespace quorvale {

QString schemaScript()
{
    QFile file(QStringLiteral(":/sql/schema.sql"));
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(ErrorNumber::FileNotFound,
                           QStringLiteral("schema script missing from the resources"));
    return QString::fromUtf8(file.readAll());
}

QStringList scriptBatches(const QString &script)
{
    QStringList batches;
    for (const TsqlBatch &batch : tsqlBatches(script)) {
        QStringList statement;
        for (QString line : batch.text.split(QLatin1Char('\n'))) {
            if (line.endsWith(QLatin1Char('\r')))
                line.chop(1);
            const QString trimmed = line.trimmed();
            // Comment lines are left out so that the engine sees the statement alone.
            if (!trimmed.isEmpty() && !trimmed.startsWith(QLatin1String("--")))
                statement << line;
        }
        if (!statement.isEmpty())
            batches << statement.join(QLatin1Char('\n')).trimmed();
    }
    return batches;
}

void createSchema(Connection &connection)
{
    const QStringList batches = scriptBatches(schemaScript());
    for (const QString &batch : batches) {
        try {
            connection.Execute(batch);
        } catch (const RuntimeError &error) {
            // Name the statement: the driver's text alone does not say which one failed.
            throw RuntimeError(error.number(),
                               QStringLiteral("%1: %2").arg(batch.section(QLatin1Char('\n'), 0, 0),
                                                            error.description()));
        }
    }
}

} // namespace quorvale
