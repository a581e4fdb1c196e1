#pragma once

#include "tsql/tsqlstatement.h"

#include <QList>
#include <QString>
#include <functional>

namespace quorvale {

class TsqlCatalog;

// Parses T-SQL (the subset this system's statements and schema use) and
// writes SQLite SQL that means the same. Supported: SELECT [DISTINCT] [TOP n]
// with joins, WHERE, GROUP BY, HAVING, ORDER BY; INSERT, UPDATE, DELETE;
// CREATE TABLE / [UNIQUE] INDEX, DROP TABLE / INDEX; SET options (ignored).
// Anything else throws TsqlError naming the token and its position.
class TsqlTranslator {
  public:
    explicit TsqlTranslator(TsqlCatalog &catalog);

    // Translates the statements of one batch one at a time and hands each to
    // run before reading the next, so a statement sees the tables that the
    // ones before it created.
    void translate(const QString &tsql, const std::function<void(const TsqlStatement &)> &run);
    // Every statement of a batch that does not change the schema midway.
    QList<TsqlStatement> translate(const QString &tsql);

  private:
    TsqlCatalog &m_catalog;
};

// The collation that gives text SQL Server's *_CI_AS behaviour.
inline constexpr char tsqlCollation[] = "CI_AS";

} // namespace quorvale
