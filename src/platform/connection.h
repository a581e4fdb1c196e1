#pragma once

#include <QSqlDatabase>
#include <QString>
#include <memory>

namespace quorvale {

class TsqlAdapter;

// The ADO-shaped connection the windows use. ConnectionString is the OLE DB
// style text ("Provider=...;Password=...;User ID=...;Initial Catalog='...';
// Data Source='...'"); Open() picks the engine from the data source:
// "sqlite:PATH" is the embedded engine, anything else SQL Server over ODBC.
class Connection {
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    QString ConnectionString;
    int ConnectionTimeout = 15; // seconds

    // Throws RuntimeError with the driver's text when the open fails.
    void Open();
    bool isOpen() const;
    bool isEmbedded() const;

    // Runs a T-SQL statement that returns no rows (DDL, INSERT, UPDATE).
    void Execute(const QString &tsql);

    // The underlying Qt connection, for bulk loading by the admin tool.
    QSqlDatabase database() const;
    // Non-null on the embedded engine once open.
    TsqlAdapter *adapter() const;

private:
    QString m_name;
    bool m_embedded = false;
    std::unique_ptr<TsqlAdapter> m_adapter;
};

using ConnectionPtr = std::shared_ptr<Connection>;

} // namespace quorvale
