#include "tsql/tsqladapter.h"

#include "tsql/tsqlerror.h"
#include "tsql/tsqlfunctions.h"

#include <QSqlDriver>
#include <QVariant>
#include <sqlite3.h>

namespace quorvale {

TsqlAdapter::TsqlAdapter(const QString &connectionName)
    : m_catalog(connectionName), m_translator(m_catalog)
{
}

void TsqlAdapter::install(const QSqlDatabase &db)
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    sqlite3 *raw = nullptr;
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        raw = *static_cast<sqlite3 *const *>(handle.constData());
    if (!registerTsqlFunctions(raw))
        throw TsqlError(QStringLiteral("Cannot install the T-SQL functions on the embedded database."));
}

TsqlStatement TsqlAdapter::translateQuery(const QString &tsql)
{
    const QList<TsqlStatement> statements = m_translator.translate(tsql);
    if (statements.size() != 1 || !statements.first().returnsRows)
        throw TsqlError(QStringLiteral("A recordset needs exactly one SELECT statement."));
    return statements.first();
}

void TsqlAdapter::translateBatch(const QString &tsql,
                                 const std::function<void(const TsqlStatement &)> &run)
{
    m_translator.translate(tsql, run);
}

} // namespace quorvale
