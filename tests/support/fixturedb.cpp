#include "support/fixturedb.h"

#include "db/recordset.h"
#include "dbtools/bulkinsert.h"
#include "dbtools/demodata.h"
#include "dbtools/embeddeddatabase.h"
#include "dbtools/schemascript.h"
#include "runtime/runtimeerror.h"
#include "runtime/settings.h"

namespace quorvale {

QList<QStringList> rowsOf(const ConnectionPtr &connection, const QString &tsql)
{
    Recordset rs;
    rs.Open(tsql, connection);
    QList<QStringList> result;
    while (!rs.eof()) {
        QStringList row;
        for (int i = 0; i < rs.fieldCount(); ++i)
            row << rs.Fields(i).text();
        result << row;
        rs.MoveNext();
    }
    return result;
}

FixtureDb::FixtureDb()
{
    if (!m_dir.isValid())
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("no temporary folder for the fixture database"));
    m_path = m_dir.filePath(QStringLiteral("fixture.db"));
    m_connection = openEmbeddedDatabase(m_path, true);
    createSchema(*m_connection);
}

FixtureDb::~FixtureDb() = default;

QString FixtureDb::server() const
{
    return embeddedServer(m_path);
}

void FixtureDb::insert(const QString &table, const Values &values)
{
    QStringList columns;
    QVariantList row;
    for (const auto &[column, value] : values) {
        columns << column;
        row << value;
    }
    BulkInsert(m_connection->database(), table, columns).add(row);
}

void FixtureDb::insertRows(const QString &table, const QStringList &columns,
                           const QList<QVariantList> &rows)
{
    BulkInsert insert(m_connection->database(), table, columns);
    for (const QVariantList &row : rows)
        insert.add(row);
}

void FixtureDb::execute(const QString &tsql)
{
    m_connection->Execute(tsql);
}

void FixtureDb::loadDemo(const QDate &today, int scale)
{
    loadDemoData(m_connection->database(), today, scale);
}

void FixtureDb::writeSettings(const QString &login, const QString &password,
                              const QString &database) const
{
    DatabaseSettings{server(), login, password, database}.save();
}

QList<QStringList> FixtureDb::rows(const QString &tsql) const
{
    return rowsOf(m_connection, tsql);
}

QString FixtureDb::scalar(const QString &tsql) const
{
    const QList<QStringList> all = rows(tsql);
    return all.isEmpty() || all.first().isEmpty() ? QString() : all.first().first();
}

} // namespace quorvale
