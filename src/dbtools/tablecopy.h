#pragma once

#include "db/connection.h"

#include <QList>
#include <QString>
#include <functional>

namespace quorvale {

// Rows of one table as the copy counted them.
struct TableCopyCount {
    QString table;
    qint64 read = 0;    // rows the source handed over
    qint64 written = 0; // rows the target table holds afterwards
};

// Called every few thousand rows and once more when a table is done.
using TableCopyProgress = std::function<void(const QString &table, qint64 rows, bool done)>;

// Copies every table of the target's schema, in the schema's order, from a
// server into the open embedded target: each read forward-only with the
// schema's column list, each value converted by the target column's declared
// type, every row written in the caller's transaction. A table or column
// the source lacks, or a value that does not fit, throws RuntimeError
// naming it.
QList<TableCopyCount> copySchemaTables(const ConnectionPtr &source, Connection &target,
                                       const TableCopyProgress &progress = {});

} // namespace quorvale
