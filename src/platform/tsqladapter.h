#pragma once

#include "platform/tsqlcatalog.h"
#include "platform/tsqlstatement.h"
#include "platform/tsqltranslator.h"

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
    // every freshly opened SQLite connection. Throws RuntimeError.
    static void install(const QSqlDatabase &db);

    // The one query of a recordset, with its result columns. Throws
    // RuntimeError when the text is not exactly one SELECT.
    TsqlStatement translateQuery(const QString &tsql);
    // The statements of one batch, handed one at a time to run.
    void translateBatch(const QString &tsql, const std::function<void(const TsqlStatement &)> &run);

    TsqlCatalog &catalog() { return m_catalog; }

  private:
    TsqlCatalog m_catalog;
    TsqlTranslator m_translator;
};

} // namespace quorvale
