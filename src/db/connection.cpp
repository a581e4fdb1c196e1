#include "db/connection.h"

#include "db/embeddedfile.h"
#include "db/odbcconnectionstring.h"
#include "db/sqlerrortext.h"
#include "runtime/runtimeerror.h"
#include "tsql/sqlliteral.h"
#include "tsql/tsqladapter.h"
#include "tsql/tsqlbatches.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <atomic>

namespace quorvale {

namespace {

const QLatin1String embeddedPrefix("sqlite:");
const QLatin1String odbcPrefix("odbc:");

[[noreturn]] void closedError()
{
    throw RuntimeError(
        3709, QStringLiteral("The connection cannot be used to perform this operation. It is "
                             "either closed or invalid in this context."));
}

} // namespace

Connection::Connection()
{
    static std::atomic<int> counter{0};
    m_name = QStringLiteral("quorvale-connection-%1").arg(++counter);
}

Connection::~Connection()
{
    m_adapter.reset();
    if (QSqlDatabase::contains(m_name)) {
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
    }
}

QString Connection::embeddedConnectionString(const QString &path)
{
    return QStringLiteral(
               "Provider=SQLOLEDB.1;Password=;Persist Security Info=False;User ID=;Initial "
               "Catalog='';Data Source='") +
           embeddedPrefix + sqlQuoted(path) + QLatin1Char('\'');
}

QString Connection::embeddedDatabasePath(const QString &dataSource)
{
    if (!dataSource.startsWith(embeddedPrefix, Qt::CaseInsensitive))
        return {};
    const QString path = dataSource.mid(embeddedPrefix.size());
    if (!QDir::isRelativePath(path))
        return path;
    const QString base = QCoreApplication::instance() ? QCoreApplication::applicationDirPath()
                                                      : QDir::currentPath();
    return QDir(base).absoluteFilePath(path);
}

QString Connection::odbcDataSourceConnectionString(const QString &odbc)
{
    return QStringLiteral(
               "Provider=SQLOLEDB.1;Password=;Persist Security Info=False;User ID=;Initial "
               "Catalog='';Data Source='") +
           odbcPrefix + sqlQuoted(odbc) + QLatin1Char('\'');
}

void Connection::Open()
{
    if (isOpen())
        throw RuntimeError(ErrorNumber::ObjectOpen,
                           QStringLiteral("Operation is not allowed when the object is open."));
    const AdoConnectionValues values = parseAdoConnectionString(ConnectionString);
    m_adapter.reset();
    if (QSqlDatabase::contains(m_name))
        QSqlDatabase::removeDatabase(m_name);

    const QString path = embeddedDatabasePath(values.dataSource);
    if (!path.isEmpty()) {
        if (!CreateIfMissing && !QFileInfo::exists(path))
            throw RuntimeError(
                ErrorNumber::DatabaseError,
                QStringLiteral("Cannot open database \"%1\": the file does not exist.")
                    .arg(QDir::toNativeSeparators(path)));
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(path);
        if (ConnectionTimeout > 0)
            db.setConnectOptions(
                QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(ConnectionTimeout * 1000));
        if (!db.open()) {
            const QString text = sqlErrorText(db.lastError());
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_name);
            throw RuntimeError(ErrorNumber::DatabaseError, text);
        }
        try {
            asDatabaseError([&] { TsqlAdapter::install(db); });
            if (!CreateIfMissing)
                checkEmbeddedDatabase(db, path);
        } catch (...) {
            db.close();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_name);
            throw;
        }
        m_embedded = true;
        m_adapter = std::make_unique<TsqlAdapter>(m_name);
        return;
    }

    if (values.dataSource.startsWith(odbcPrefix, Qt::CaseInsensitive)) {
        openOdbc(completedOdbcConnectionString(values.dataSource.mid(odbcPrefix.size()), values));
        return;
    }
    const QString driver = chooseSqlServerDriver(installedOdbcDrivers());
    if (driver.isEmpty())
        throw RuntimeError(
            ErrorNumber::DatabaseError,
            QStringLiteral("[Microsoft][ODBC Driver Manager] Data source name not found and no "
                           "default driver specified (no SQL Server ODBC driver is installed)"));
    openOdbc(odbcConnectionString(values, driver));
}

void Connection::openOdbc(const QString &odbc)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), m_name);
    db.setDatabaseName(qodbcDatabaseName(odbc));
    if (ConnectionTimeout > 0)
        db.setConnectOptions(QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=%1").arg(ConnectionTimeout));
    if (!db.open()) {
        const QString text = sqlErrorText(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        throw RuntimeError(ErrorNumber::DatabaseError, text);
    }
    m_embedded = false;
}

void Connection::Close()
{
    if (!isOpen())
        throw RuntimeError(ErrorNumber::ObjectClosed,
                           QStringLiteral("Operation is not allowed when the object is closed."));
    QSqlDatabase::database(m_name, false).close();
}

bool Connection::isOpen() const
{
    return QSqlDatabase::contains(m_name) && QSqlDatabase::database(m_name, false).isOpen();
}

bool Connection::isEmbedded() const
{
    return m_embedded;
}

void Connection::Execute(const QString &tsql)
{
    if (!isOpen())
        closedError();
    QSqlDatabase db = database();
    auto run = [&](const QString &sql) {
        if (sql.isEmpty())
            return;
        QSqlQuery q(db);
        if (!q.exec(sql))
            throw RuntimeError(ErrorNumber::DatabaseError, sqlErrorText(q.lastError()));
    };
    for (const TsqlBatch &batch : tsqlBatches(tsql)) {
        if (m_embedded)
            asDatabaseError([&] {
                m_adapter->translateBatch(batch.text,
                                          [&](const TsqlStatement &st) { run(st.sql); });
            });
        else
            run(batch.text);
    }
}

QSqlDatabase Connection::database() const
{
    return QSqlDatabase::database(m_name, false);
}

TsqlAdapter *Connection::adapter() const
{
    return m_adapter.get();
}

} // namespace quorvale
