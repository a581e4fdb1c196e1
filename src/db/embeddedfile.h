#pragma once

#include <QString>

class QSqlDatabase;

namespace quorvale {

// Right after an embedded database file is opened: refuses a file that is
// empty, is not a database, is damaged or stays locked by another writer
// longer than the connection waits, with a message naming the file, so the
// first query does not fail with a misleading "Invalid object name".
// Throws RuntimeError.
void checkEmbeddedDatabase(const QSqlDatabase &db, const QString &path);

} // namespace quorvale
