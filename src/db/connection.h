#pragma once

// Library db: the ADO-shaped database access the windows use (Connection,
// Recordset, Field), over SQL Server through ODBC or the embedded engine
// through tsql, with the driver's own error texts. It depends on tsql and
// runtime only, never on windows, reports or output.

#include <QSqlDatabase>
#include <QString>
#include <memory>

namespace quorvale {

class TsqlAdapter;

// The ADO-shaped connection the windows use. ConnectionString is the OLE DB
// style text ("Provider=...;Password=...;User ID=...;Initial Catalog='...';
// Data Source='...'"); Open() picks the engine from the data source:
// "sqlite:PATH" is the embedded engine, "odbc:STRING" any ODBC data source
// through a complete ODBC connection string, anything else SQL Server
// through the best SQL Server ODBC driver installed.
class Connection {
  public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    QString ConnectionString;
    int ConnectionTimeout = 15; // seconds
    // Embedded engine only: create the database file when it does not exist.
    // Off by default, so a mistyped path fails instead of showing an empty
    // database; the admin tool sets it to create a new file.
    bool CreateIfMissing = false;

    // The connection string that opens an embedded database file.
    static QString embeddedConnectionString(const QString &path);
    // The file an embedded data source ("sqlite:PATH") names, a relative
    // path taken from the program's folder; empty for a server.
    static QString embeddedDatabasePath(const QString &dataSource);
    // The connection string that opens an ODBC data source as the ODBC
    // connection string describes it ("DRIVER={PostgreSQL Unicode};...").
    static QString odbcDataSourceConnectionString(const QString &odbc);

    // Throws RuntimeError with the driver's text when the open fails.
    void Open();
    // Closes it, as a lost connection is: every later query fails as on a
    // connection never opened.
    void Close();
    bool isOpen() const;
    bool isEmbedded() const;

    // Runs T-SQL that returns no rows (DDL, INSERT, UPDATE): one batch, or
    // several separated by lines holding only GO.
    void Execute(const QString &tsql);

    // The underlying Qt connection, for bulk loading by the admin tool.
    QSqlDatabase database() const;
    // Non-null on the embedded engine once open.
    TsqlAdapter *adapter() const;

  private:
    void openOdbc(const QString &odbc);

    QString m_name;
    bool m_embedded = false;
    std::unique_ptr<TsqlAdapter> m_adapter;
};

using ConnectionPtr = std::shared_ptr<Connection>;

} // namespace quorvale
