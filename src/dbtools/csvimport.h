#pragma once

#include <QString>

namespace quorvale {

class Connection;

// Loads a CSV file (UTF-8, a header row naming columns of the table) into a
// table of an open embedded database, each value converted by its column's
// declared type, in one transaction. Columns the header leaves out get their
// defaults; an unquoted empty field is NULL. Throws RuntimeError naming the
// file, line, column and reason of the first bad value; nothing is written
// then. Returns the number of rows loaded.
qint64 importCsv(Connection &connection, const QString &table, const QString &path);

} // namespace quorvale
