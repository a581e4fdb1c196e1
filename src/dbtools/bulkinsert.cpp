#include "dbtools/bulkinsert.h"

#include "runtime/runtimeerror.h"

#include <QDate>
#include <QDateTime>
#include <QSqlDriver>
#include <sqlite3.h>

namespace quorvale {

namespace {

QString bracketed(const QString &name)
{
    return QLatin1Char('[') + name + QLatin1Char(']');
}

} // namespace

BulkInsert::BulkInsert(const QSqlDatabase &db, const QString &table, const QStringList &columns)
    : m_table(table), m_columns(columns.size())
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        m_handle = *static_cast<sqlite3 *const *>(handle.constData());
    if (!m_handle)
        throw RuntimeError(ErrorNumber::DatabaseError,
                           QStringLiteral("%1: not an open embedded database").arg(table));
    QStringList names;
    QStringList marks;
    for (const QString &column : columns) {
        names << bracketed(column);
        marks << QStringLiteral("?");
    }
    const QByteArray sql =
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(bracketed(table), names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')))
            .toUtf8();
    if (sqlite3_prepare_v2(m_handle, sql.constData(), int(sql.size()), &m_statement, nullptr) !=
        SQLITE_OK)
        fail();
}

BulkInsert::~BulkInsert()
{
    sqlite3_finalize(m_statement);
}

void BulkInsert::fail() const
{
    throw RuntimeError(
        ErrorNumber::DatabaseError,
        QStringLiteral("%1: %2").arg(m_table, QString::fromUtf8(sqlite3_errmsg(m_handle))));
}

void BulkInsert::add(const QVariantList &values)
{
    if (values.size() != m_columns)
        throw RuntimeError(ErrorNumber::DatabaseError,
                           QStringLiteral("%1: %2 values for %3 columns")
                               .arg(m_table)
                               .arg(values.size())
                               .arg(m_columns));
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QVariant value = storedValue(values[i]);
        const int index = int(i) + 1;
        int rc = SQLITE_OK;
        switch (value.typeId()) {
        case QMetaType::UnknownType:
            rc = sqlite3_bind_null(m_statement, index);
            break;
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
            rc = sqlite3_bind_int64(m_statement, index, value.toLongLong());
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            rc = sqlite3_bind_double(m_statement, index, value.toDouble());
            break;
        default: {
            const QByteArray text = value.toString().toUtf8();
            rc = sqlite3_bind_text(m_statement, index, text.constData(), int(text.size()),
                                   SQLITE_TRANSIENT);
            break;
        }
        }
        if (rc != SQLITE_OK)
            fail();
    }
    const int rc = sqlite3_step(m_statement);
    sqlite3_reset(m_statement);
    if (rc != SQLITE_DONE)
        fail();
    ++m_count;
}

QVariant BulkInsert::storedValue(const QVariant &value)
{
    if (value.isNull())
        return QVariant();
    switch (value.typeId()) {
    case QMetaType::QDate:
        return value.toDate().toString(QStringLiteral("yyyy-MM-dd 00:00:00"));
    case QMetaType::QDateTime:
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    default:
        return value;
    }
}

} // namespace quorvale
