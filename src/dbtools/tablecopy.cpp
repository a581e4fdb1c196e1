#include "dbtools/tablecopy.h"

#include "db/recordset.h"
#include "db/sqlerrortext.h"
#include "dbtools/bulkinsert.h"
#include "runtime/runtimeerror.h"
#include "tsql/tsqladapter.h"
#include "tsql/tsqlerror.h"
#include "tsql/tsqlvalue.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace quorvale {

namespace {

constexpr qint64 progressEvery = 5000;

[[noreturn]] void copyError(const QString &text)
{
    throw RuntimeError(ErrorNumber::DatabaseError, text);
}

QStringList schemaTables(Connection &target)
{
    QSqlQuery query(target.database());
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name "
                                   "NOT LIKE 'sqlite%' ORDER BY rowid")))
        copyError(sqlErrorText(query.lastError()));
    QStringList tables;
    while (query.next())
        tables << query.value(0).toString();
    return tables;
}

// Names go to the server unquoted, as the reports write them: every name of
// the schema is a regular identifier, and a server that folds unquoted names
// (PostgreSQL to lower case) then finds its own tables.
QString columnList(const TsqlTable &table)
{
    QStringList names;
    for (const TsqlTable::Column &c : table.columns)
        names << c.name;
    return names.join(QStringLiteral(", "));
}

// A table or column the source lacks is named before any row is read.
void checkSource(Connection &source, const TsqlTable &table)
{
    QSqlQuery probe(source.database());
    probe.setForwardOnly(true);
    if (!probe.exec(QStringLiteral("SELECT * FROM %1 WHERE 1 = 0").arg(table.name)))
        copyError(QStringLiteral("table %1 is missing on the source or cannot be read: %2")
                      .arg(table.name, sqlErrorText(probe.lastError())));
    const QSqlRecord record = probe.record();
    QStringList missing;
    for (const TsqlTable::Column &c : table.columns) {
        bool found = false;
        for (int i = 0; i < record.count() && !found; ++i)
            found = record.fieldName(i).compare(c.name, Qt::CaseInsensitive) == 0;
        if (!found)
            missing << table.name + QLatin1Char('.') + c.name;
    }
    if (missing.size() == 1)
        copyError(QStringLiteral("column %1 is missing on the source").arg(missing.first()));
    if (!missing.isEmpty())
        copyError(QStringLiteral("columns %1 are missing on the source")
                      .arg(missing.join(QStringLiteral(", "))));
}

qint64 rowCount(Connection &target, const QString &table)
{
    QString quoted = table;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    QSqlQuery query(target.database());
    if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM \"%1\"").arg(quoted)) || !query.next())
        copyError(sqlErrorText(query.lastError()));
    return query.value(0).toLongLong();
}

TableCopyCount copyTable(const ConnectionPtr &source, Connection &target, const TsqlTable &table,
                         const TableCopyProgress &progress)
{
    checkSource(*source, table);
    QList<TsqlType> types;
    QStringList columns;
    for (const TsqlTable::Column &c : table.columns) {
        types << TsqlType::parse(c.type);
        columns << c.name;
    }
    BulkInsert insert(target.database(), table.name, columns);
    TableCopyCount count{table.name};
    // The driver's words alone do not say which table it was reading.
    const auto reading = [&](const auto &step) {
        try {
            step();
        } catch (const RuntimeError &e) {
            copyError(
                QStringLiteral("reading %1 from the source: %2").arg(table.name, e.description()));
        }
    };
    Recordset rows;
    reading([&] {
        rows.Open(QStringLiteral("SELECT %1 FROM %2").arg(columnList(table), table.name), source);
    });
    QVariantList values;
    for (; !rows.eof(); reading([&] { rows.MoveNext(); })) {
        ++count.read;
        values.clear();
        for (int i = 0; i < types.size(); ++i) {
            try {
                values << tsqlStoredFromValue(types.at(i), rows.Fields(i).Value());
            } catch (const TsqlError &e) {
                copyError(QStringLiteral("%1.%2, row %3: %4")
                              .arg(table.name, columns.at(i))
                              .arg(count.read)
                              .arg(e.text()));
            }
        }
        insert.add(values);
        if (progress && count.read % progressEvery == 0)
            progress(table.name, count.read, false);
    }
    rows.Close();
    count.written = rowCount(target, table.name);
    if (progress)
        progress(table.name, count.read, true);
    return count;
}

} // namespace

QList<TableCopyCount> copySchemaTables(const ConnectionPtr &source, Connection &target,
                                       const TableCopyProgress &progress)
{
    QList<TableCopyCount> counts;
    for (const QString &name : schemaTables(target)) {
        const TsqlTable *table = target.adapter()->catalog().table(name);
        if (!table)
            copyError(QStringLiteral("table %1 vanished from the new database").arg(name));
        counts << copyTable(source, target, *table, progress);
    }
    return counts;
}

} // namespace quorvale
