#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariant>

struct sqlite3;
struct sqlite3_stmt;

namespace quorvale {

// One prepared INSERT for a table of an embedded database, run once per row
// straight on SQLite's API (a million demo rows would otherwise spend most of
// their time in Qt's binding). Values are stored the way the embedded engine
// keeps them: dates as 'YYYY-MM-DD HH:MM:SS' text, bits as 0/1, a null
// QVariant as NULL.
class BulkInsert {
  public:
    BulkInsert(const QSqlDatabase &db, const QString &table, const QStringList &columns);
    ~BulkInsert();
    BulkInsert(const BulkInsert &) = delete;
    BulkInsert &operator=(const BulkInsert &) = delete;

    // Throws RuntimeError with SQLite's text when the row is refused.
    void add(const QVariantList &values);
    qint64 count() const { return m_count; }

    static QVariant storedValue(const QVariant &value);

  private:
    [[noreturn]] void fail() const;

    sqlite3 *m_handle = nullptr;
    sqlite3_stmt *m_statement = nullptr;
    QString m_table;
    qsizetype m_columns = 0;
    qint64 m_count = 0;
};

} // namespace quorvale
