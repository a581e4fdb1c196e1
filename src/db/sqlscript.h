#pragma once

#include "db/field.h"
#include "tsql/tsqlcolumn.h"

#include <QList>
#include <QString>

namespace quorvale {

class Connection;

// Receives what the statements of a script give back, in order.
class SqlResultSink {
  public:
    virtual ~SqlResultSink() = default;
    virtual void beginRows(const QList<TsqlColumn> &columns) = 0;
    virtual void row(const QList<Field> &fields) = 0;
    virtual void endRows() = 0;
    // An INSERT, UPDATE or DELETE (on a server, any statement that reports a count).
    virtual void rowsAffected(qint64 count) = 0;
};

// Runs a script of batches separated by GO lines. The embedded engine gets
// each statement through the T-SQL adapter, all batches in one transaction
// that is rolled back on any error; a server gets each batch as it stands.
// Throws RuntimeError "batch N, line L: <the engine's or driver's text>",
// L being the script's line of the failing token or statement.
void runSqlScript(Connection &connection, const QString &script, SqlResultSink &sink);

} // namespace quorvale
