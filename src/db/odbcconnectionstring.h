#pragma once

#include <QString>
#include <QStringList>

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

} // namespace quorvale
