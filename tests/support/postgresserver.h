#pragma once

#include <QString>
#include <QTemporaryDir>

namespace quorvale::testing {

// A PostgreSQL server of one test's own (tests/support/pg_server.sh): its
// files and Unix socket in a temporary folder, no network address, stopped
// when the object goes. Throws std::runtime_error with the reason when
// PostgreSQL or its ODBC driver is missing or the server does not start.
class PostgresServer {
  public:
    PostgresServer();
    ~PostgresServer();
    PostgresServer(const PostgresServer &) = delete;
    PostgresServer &operator=(const PostgresServer &) = delete;

    // Creates a database with the schema's twenty tables in PostgreSQL's
    // types, and copies every row of an embedded database file into it.
    void createDatabase(const QString &name, const QString &embeddedFile = {});
    // Runs statements through psql; throws on any error.
    void psql(const QString &database, const QString &sql);
    // The connection string for the PostgreSQL Unicode ODBC driver; without
    // a database, one that names neither database nor user.
    QString odbc(const QString &database = {}) const;

  private:
    QTemporaryDir m_dir;
    bool m_started = false;
};

} // namespace quorvale::testing
