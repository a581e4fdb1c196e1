#pragma once

#include "db/connection.h"
#include "dbtools/tablecopy.h"

#include <QList>
#include <QString>
#include <functional>

namespace quorvale {

// Copies the schema's tables from the source into a new embedded database
// file, in one transaction, kept only when complete (see buildNewFile).
// `copied` sees every table's counts before the file is kept; a table whose
// rows read and written differ then fails the snapshot and no file is kept.
// Returns the rows read. Throws RuntimeError.
qint64 writeSnapshot(const ConnectionPtr &source, const QString &path, bool replace,
                     const TableCopyProgress &progress,
                     const std::function<void(const QList<TableCopyCount> &)> &copied);

} // namespace quorvale
