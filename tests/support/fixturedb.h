#pragma once

#include "db/connection.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <utility>
#include <vector>

namespace quorvale {

// Every row of a T-SQL query, each field as its cell text (NULL as "").
QList<QStringList> rowsOf(const ConnectionPtr &connection, const QString &tsql);

// A small embedded database built by code for one test: a temporary file with
// the full (empty) schema, filled row by row.
//
//     FixtureDb db;
//     db.insert("室表", {{"L_ID", 1}, {"S_ID", 10}, {"室", "0502"}});
//     db.writeSettings();            // the program's sign-in now opens this file
//     auto rows = db.rows("Select 室 From 室表");
//
// Dates go in as QDate or QDateTime (stored as 'YYYY-MM-DD HH:MM:SS'), bits as
// bool, NULL as QVariant().
class FixtureDb {
  public:
    using Values = std::vector<std::pair<QString, QVariant>>;

    FixtureDb();
    ~FixtureDb();
    FixtureDb(const FixtureDb &) = delete;
    FixtureDb &operator=(const FixtureDb &) = delete;

    QString path() const { return m_path; }
    // The Svr setting that selects this file: "sqlite:PATH".
    QString server() const;

    void insert(const QString &table, const Values &values);
    // Several rows of one table, all with the same columns.
    void insertRows(const QString &table, const QStringList &columns,
                    const QList<QVariantList> &rows);
    // Runs T-SQL (UPDATE, DELETE, DDL) through the dialect adapter.
    void execute(const QString &tsql);
    // Adds the demo data set dated from `today` (and the benchmark office when scale > 0).
    void loadDemo(const QDate &today, int scale = 0);

    // Writes Svr/UID/PWD/DBname of Quorvale\DBConfig so that a sign-in opens this file.
    void writeSettings(const QString &login = QStringLiteral("sa"),
                       const QString &password = QStringLiteral("secret"),
                       const QString &database = QStringLiteral("quorvale")) const;

    // The fixture's own open connection, for Recordset::Open.
    ConnectionPtr connection() const { return m_connection; }
    // Every row of a T-SQL query, each field as its cell text (NULL as "").
    QList<QStringList> rows(const QString &tsql) const;
    // The first field of the first row, or "" when there is none.
    QString scalar(const QString &tsql) const;

  private:
    QTemporaryDir m_dir;
    QString m_path;
    ConnectionPtr m_connection;
};

} // namespace quorvale
