#include "tools/schemascript.h"

#include "db/connection.h"
#include "runtime/runtimeerror.h"

#include <QFile>
#include <QRegularExpression>

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
    static const QRegularExpression goLine(QStringLiteral("^\\s*GO\\s*$"),
                                           QRegularExpression::CaseInsensitiveOption);
    QStringList batches;
    QStringList current;
    bool hasStatement = false;
    const auto flush = [&] {
        if (hasStatement)
            batches << current.join(QLatin1Char('\n')).trimmed();
        current.clear();
        hasStatement = false;
    };
    const QStringList lines = script.split(QLatin1Char('\n'));
    for (QString line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (goLine.match(line).hasMatch()) {
            flush();
            continue;
        }
        const QString trimmed = line.trimmed();
        // Comment lines are left out so that the engine sees the statement alone.
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1String("--")))
            continue;
        current << line;
        hasStatement = true;
    }
    flush();
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
