#pragma once

#include "db/connection.h"

#include <QString>

namespace quorvale {

// The data source text that selects the embedded engine for a file.
QString embeddedServer(const QString &path);

// Opens the embedded database in a file, creating an empty one when asked.
ConnectionPtr openEmbeddedDatabase(const QString &path, bool create = false);

} // namespace quorvale
