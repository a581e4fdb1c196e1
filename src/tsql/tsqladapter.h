#pragma once

// Library tsql: T-SQL text on SQLite. The statements the windows write for
// SQL Server run unchanged on the embedded engine: this library tokenizes
// and translates them, knows the schema's column types, and installs the
// collation and functions the translation relies on. It needs Qt Core/Sql
// and sqlite3 only and must not depend on any other library of the program:
// its refusals are TsqlError, which the database layer turns into its own.

#include "tsql/tsqlcatalog.h"
#include "tsql/tsqlstatement.h"
#include "tsql/tsqltranslator.h"

#include <QSqlDatabase>
#include <QString>
#include <functional>

namespace quorvale {

// The embedded engine's T-SQL dialect adapter for one open connection: the
// catalog of its tables and the translator that uses it.
class TsqlAdapter {
  public:
    explicit TsqlAdapter(const QString &connectionName);

    // Installs the collation and functions the translated SQL needs; call on
    // every freshly opened SQLite connection. Throws TsqlError.
    static void install(const QSqlDatabase &db);

    // The one query of a recordset, with its result columns. Throws
    // TsqlError when the text is not exactly one SELECT.
    TsqlStatement translateQuery(const QString &tsql);
    // The statements of one batch, handed one at a time to run.
    void translateBatch(const QString &tsql, const std::function<void(const TsqlStatement &)> &run);

    TsqlCatalog &catalog() { return m_catalog; }

  private:
    TsqlCatalog m_catalog;
    TsqlTranslator m_translator;
};

} // namespace quorvale
