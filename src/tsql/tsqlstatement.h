#pragma once

#include "tsql/tsqlcolumn.h"

#include <QList>
#include <QString>

namespace quorvale {

// One T-SQL statement as SQLite runs it.
struct TsqlStatement {
    QString sql;               // empty for statements that need nothing on SQLite (SET options)
    QList<TsqlColumn> columns; // result columns of a query, in order
    bool returnsRows = false;
    bool changesSchema = false;
    bool changesRows = false; // INSERT, UPDATE, DELETE: the caller may report rows affected
    int position = 0;         // 1-based character position of the statement in its batch
};

} // namespace quorvale
