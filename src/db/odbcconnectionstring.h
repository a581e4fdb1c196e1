#pragma once

#include <QString>
#include <QStringList>
#include <utility>

namespace quorvale {

// The values of an ADO (OLE DB) connection string that the engines use.
struct AdoConnectionValues {
    QString provider;
    QString password;
    QString userId;
    QString initialCatalog;
    QString dataSource;
};

// Reads "Key=value;Key='value';..." as ADO does: keys ignore case and blanks,
// a value may be wrapped in single or double quotes (a doubled quote inside
// stands for one). Throws RuntimeError with OLE DB's message when malformed.
AdoConnectionValues parseAdoConnectionString(const QString &connectionString);

// ODBC driver names installed on this machine (odbcinst.ini on Unix, the
// registry on Windows).
QStringList installedOdbcDrivers();

// The SQL Server driver to use from those installed, best first: ODBC Driver
// 18, 17, other "ODBC Driver N for SQL Server", Windows' "SQL Server",
// FreeTDS. Empty when none fits.
QString chooseSqlServerDriver(const QStringList &installed);

// The ODBC connection string for a SQL Server data source ("host",
// "host,port" or "host\instance") through the given driver.
QString odbcConnectionString(const AdoConnectionValues &values, const QString &driver);

// A data source "odbc:..." holds a complete ODBC connection string for any
// driver, used as it stands. The ADO string's login, password and catalog
// are added as UID, PWD and DATABASE only where the ODBC string names none.
QString completedOdbcConnectionString(const QString &odbc, const AdoConnectionValues &values);

// The keys (lower case) and values of an ODBC connection string, in order;
// a "{...}" value may hold ';' and '=', and "}}" inside it is one brace.
QList<std::pair<QString, QString>> odbcConnectionStringPairs(const QString &odbc);

// PostgreSQL's driver hands over the first row of a result only after reading
// all of it into memory, unless told to fetch through a cursor; this adds
// that setting to a string for it that does not choose. Other drivers stream
// a forward-only result on their own.
QString streamingOdbcConnectionString(const QString &odbc);

// The database name QODBC needs to connect with an ODBC connection string.
QString qodbcDatabaseName(const QString &odbc);

} // namespace quorvale
