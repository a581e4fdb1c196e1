#include "tsql/tsqlcatalog.h"

#include "tsql/tsqlerror.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace quorvale {

FieldKind fieldKindOfType(const QString &declaredType)
{
    QString base = declaredType.trimmed().toLower();
    const int paren = int(base.indexOf(QLatin1Char('(')));
    if (paren >= 0)
        base = base.left(paren).trimmed();
    if (base.contains(QLatin1String("char")) || base.contains(QLatin1String("text")) ||
        base == QLatin1String("uniqueidentifier") || base.isEmpty())
        return FieldKind::Text;
    if (base.contains(QLatin1String("date")) || base.contains(QLatin1String("time")))
        return FieldKind::DateTime;
    if (base == QLatin1String("bit"))
        return FieldKind::Bit;
    return FieldKind::Number;
}

TsqlCatalog::TsqlCatalog(QString connectionName) : m_connectionName(std::move(connectionName)) {}

const TsqlTable *TsqlCatalog::table(const QString &name)
{
    const QString key = name.toLower();
    const auto found = m_tables.constFind(key);
    if (found != m_tables.constEnd())
        return found.value().get();

    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    QSqlQuery q(db);
    q.setForwardOnly(true);
    std::shared_ptr<TsqlTable> table;
    q.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type IN ('table','view') AND "
                             "name = ? COLLATE NOCASE"));
    q.addBindValue(name);
    // A schema that cannot be read (a damaged or locked file) is not an
    // unknown table: say what the engine says.
    if (!q.exec())
        throw TsqlError(q.lastError().text());
    if (q.next()) {
        table = std::make_shared<TsqlTable>();
        table->name = q.value(0).toString();
        q.finish();
        QString quoted = table->name;
        quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
        QSqlQuery info(db);
        info.setForwardOnly(true);
        if (!info.exec(QStringLiteral("PRAGMA table_info(\"%1\")").arg(quoted)))
            throw TsqlError(info.lastError().text());
        {
            while (info.next()) {
                TsqlTable::Column c;
                c.name = info.value(1).toString();
                c.type = info.value(2).toString();
                c.kind = fieldKindOfType(c.type);
                c.notNull = info.value(3).toInt() != 0;
                // IDENTITY becomes SQLite's INTEGER PRIMARY KEY, or a declared type naming it.
                c.identity = (c.type == QLatin1String("INTEGER") && info.value(5).toInt() > 0) ||
                             c.type.contains(QLatin1String("identity"), Qt::CaseInsensitive);
                table->columns.append(c);
            }
        }
    }
    // Only found tables are kept: one created behind the adapter's back (a
    // bulk load through database()) must still be found later.
    if (table)
        m_tables.insert(key, table);
    return table.get();
}

void TsqlCatalog::invalidate()
{
    m_tables.clear();
}

} // namespace quorvale
