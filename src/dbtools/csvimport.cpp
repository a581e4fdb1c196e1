#include "dbtools/csvimport.h"

#include "db/connection.h"
#include "dbtools/bulkinsert.h"
#include "dbtools/csvreader.h"
#include "runtime/runtimeerror.h"
#include "tsql/tsqladapter.h"
#include "tsql/tsqlerror.h"
#include "tsql/tsqlvalue.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>

namespace quorvale {

namespace {

[[noreturn]] void importError(const QString &text)
{
    throw RuntimeError(ErrorNumber::DatabaseError, text);
}

struct Target {
    QString name;
    TsqlType type;
    bool notNull = false;
};

// The header's columns, each one of the table's, none twice.
QList<Target> targetsOf(const TsqlTable &table, const QList<CsvField> &header, const QString &where)
{
    QList<Target> targets;
    for (qsizetype i = 0; i < header.size(); ++i) {
        const QString name = header.at(i).text.trimmed();
        const int index = table.indexOf(name);
        const QString at = QStringLiteral("%1, column %2").arg(where).arg(i + 1);
        if (index < 0)
            importError(
                QStringLiteral("%1: %2 is not a column of %3")
                    .arg(at, name.isEmpty() ? QStringLiteral("an empty name") : name, table.name));
        const TsqlTable::Column &column = table.columns.at(index);
        for (const Target &t : std::as_const(targets))
            if (t.name == column.name)
                importError(QStringLiteral("%1: %2 is named twice").arg(at, column.name));
        targets.append(Target{column.name, TsqlType::parse(column.type), column.notNull});
    }
    return targets;
}

} // namespace

qint64 importCsv(Connection &connection, const QString &tableName, const QString &path)
{
    if (!connection.isEmbedded())
        importError(QStringLiteral("import loads an embedded database; the configured database "
                                   "is a server (load it with the server's own tools)"));
    const TsqlTable *table = connection.adapter()->catalog().table(tableName);
    if (!table)
        importError(QStringLiteral("the database has no table %1").arg(tableName));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        importError(QStringLiteral("cannot open %1: %2").arg(path, file.errorString()));
    const QString name = QFileInfo(path).fileName();
    CsvReader reader(file, name);
    QList<CsvField> record;
    if (!reader.next(record))
        importError(QStringLiteral("%1 is empty: the first line must name the columns").arg(name));
    const QList<Target> targets =
        targetsOf(*table, record, QStringLiteral("%1 line %2").arg(name).arg(reader.recordLine()));
    QStringList columns;
    for (const Target &t : targets)
        columns << t.name;

    QSqlDatabase db = connection.database();
    if (!db.transaction())
        importError(db.lastError().text());
    try {
        BulkInsert insert(db, table->name, columns);
        QVariantList values;
        while (reader.next(record)) {
            const QString line = QStringLiteral("%1 line %2").arg(name).arg(reader.recordLine());
            if (record.size() != targets.size())
                importError(QStringLiteral("%1: %2 fields where the header names %3")
                                .arg(line)
                                .arg(record.size())
                                .arg(targets.size()));
            values.clear();
            for (qsizetype i = 0; i < record.size(); ++i) {
                const Target &target = targets.at(i);
                const CsvField &field = record.at(i);
                const QString at =
                    QStringLiteral("%1, column %2 (%3)").arg(line).arg(i + 1).arg(target.name);
                if (!field.quoted && field.text.isEmpty()) {
                    if (target.notNull)
                        importError(QStringLiteral("%1: a value is required (an empty field is "
                                                   "NULL; write \"\" for an empty text)")
                                        .arg(at));
                    values.append(QVariant());
                    continue;
                }
                try {
                    values.append(tsqlStoredFromText(target.type, field.text));
                } catch (const TsqlError &e) {
                    importError(QStringLiteral("%1: %2").arg(at, e.text()));
                }
            }
            try {
                insert.add(values);
            } catch (const RuntimeError &e) {
                importError(QStringLiteral("%1: %2").arg(line, e.description()));
            }
        }
        if (file.error() != QFile::NoError)
            importError(QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
        const qint64 count = insert.count();
        if (!db.commit())
            importError(db.lastError().text());
        return count;
    } catch (...) {
        db.rollback();
        throw;
    }
}

} // namespace quorvale
