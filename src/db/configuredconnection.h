#pragma once

#include "db/connection.h"

#include <QString>

namespace quorvale {

struct DatabaseSettings;

// The OLE DB connection string, values spliced in as they stand: a quote in
// a value breaks the string, as the installation's settings are trusted.
QString buildConnectionString(const QString &server, const QString &database, const QString &login,
                              const QString &password);

// A connection to the database the settings name, with the 30-second
// timeout, not yet opened.
ConnectionPtr configuredConnection(const DatabaseSettings &settings);

// The same, opened; a failed open throws RuntimeError.
ConnectionPtr openDatabaseConnection(const DatabaseSettings &settings);

} // namespace quorvale
