#include "db/recordset.h"
#include "db/sqlerrortext.h"

#include "runtime/runtimeerror.h"
#include "tsql/tsqladapter.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariantList>

namespace quorvale {

namespace {

[[noreturn]] void noCurrentRecord()
{
    throw RuntimeError(
        3021, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                             "Requested operation requires a current record."));
}

[[noreturn]] void closedRecordset()
{
    throw RuntimeError(ErrorNumber::ObjectClosed, QStringLiteral("Operation is not allowed when the object is closed."));
}

} // namespace

struct Recordset::Impl {
    ConnectionPtr connection;
    QSqlQuery query;
    QList<TsqlColumn> columns;
    QVariantList row;
    QString source;
    bool open = false;
    bool eof = true;

    void fetch()
    {
        if (!query.next()) {
            eof = true;
            row.clear();
            if (query.lastError().isValid())
                throw RuntimeError(ErrorNumber::DatabaseError, sqlErrorText(query.lastError()));
            return;
        }
        eof = false;
        row.resize(columns.size());
        for (int i = 0; i < columns.size(); ++i)
            row[i] = query.value(i);
    }
};

Recordset::Recordset() : d(std::make_unique<Impl>()) {}

Recordset::~Recordset() = default;

void Recordset::Open(const QString &source, const ConnectionPtr &connection, int cursorType,
                     int lockType, int options)
{
    if (d->open)
        throw RuntimeError(ErrorNumber::ObjectOpen,
                           QStringLiteral("Operation is not allowed when the object is open."));
    if (cursorType != 0 || lockType != 1 || (options != -1 && options != 1))
        throw RuntimeError(
            3001, QStringLiteral("Arguments are of the wrong type, are out of acceptable range, "
                                 "or are in conflict with one another."));
    if (!connection || !connection->isOpen())
        throw RuntimeError(
            3709, QStringLiteral("The connection cannot be used to perform this operation. It "
                                 "is either closed or invalid in this context."));
    QString sql = source;
    QList<TsqlColumn> columns;
    const bool embedded = connection->isEmbedded();
    if (embedded) {
        const TsqlStatement st =
            asDatabaseError([&] { return connection->adapter()->translateQuery(source); });
        sql = st.sql;
        columns = st.columns;
    }
    QSqlQuery query(connection->database());
    query.setForwardOnly(true);
    // Server decimals and money as exact text ("85.5000"); Field::text() trims them.
    if (!embedded)
        query.setNumericalPrecisionPolicy(QSql::HighPrecision);
    if (!query.exec(sql))
        throw RuntimeError(ErrorNumber::DatabaseError, sqlErrorText(query.lastError()));
    const QSqlRecord record = query.record();
    if (embedded) {
        if (record.count() != columns.size())
            throw RuntimeError(
                ErrorNumber::DatabaseError,
                QStringLiteral("The embedded engine returned %1 columns where %2 were expected.")
                    .arg(record.count())
                    .arg(columns.size()));
    } else {
        for (int i = 0; i < record.count(); ++i) {
            const QSqlField f = record.field(i);
            columns.append(TsqlColumn{f.name(), fieldKindOfMetaType(f.metaType().id())});
        }
    }
    d->connection = connection;
    d->query = std::move(query);
    d->columns = columns;
    d->source = source;
    d->open = true;
    d->eof = false;
    d->fetch();
}

bool Recordset::eof() const
{
    if (!d->open)
        closedRecordset();
    return d->eof;
}

void Recordset::MoveNext()
{
    if (!d->open)
        closedRecordset();
    if (d->eof)
        noCurrentRecord();
    d->fetch();
}

void Recordset::Close()
{
    if (!d->open)
        closedRecordset();
    d->query.finish();
    d->query = QSqlQuery();
    d->row.clear();
    d->columns.clear();
    d->connection.reset();
    d->open = false;
    d->eof = true;
}

int Recordset::fieldCount() const
{
    if (!d->open)
        closedRecordset();
    return int(d->columns.size());
}

int Recordset::fieldIndex(const QString &name) const
{
    if (!d->open)
        closedRecordset();
    for (int i = 0; i < d->columns.size(); ++i)
        if (d->columns.at(i).name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    throw RuntimeError(ErrorNumber::ItemNotFound,
                       QStringLiteral("Item cannot be found in the collection corresponding to the "
                                      "requested name or ordinal."));
}

Field Recordset::Fields(const QString &name) const
{
    return Fields(fieldIndex(name));
}

Field Recordset::Fields(int index) const
{
    if (!d->open)
        closedRecordset();
    if (index < 0 || index >= d->columns.size())
        throw RuntimeError(
            ErrorNumber::ItemNotFound, QStringLiteral("Item cannot be found in the collection corresponding to the "
                                 "requested name or ordinal."));
    if (d->eof)
        noCurrentRecord();
    const TsqlColumn &c = d->columns.at(index);
    return Field(c.name, d->row.at(index), c.kind);
}

QString Recordset::source() const
{
    return d->source;
}

} // namespace quorvale
