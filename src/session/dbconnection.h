#pragma once

#include "db/connection.h"

#include <QString>

namespace quorvale {

// The one connection of the process; replaced by every sign-in attempt.
extern ConnectionPtr DbConn;
// The connection string last built.
extern QString DbConnString;

// The OLE DB connection string, values spliced in as they stand: a quote in
// a value breaks the string, as the installation's settings are trusted.
QString buildConnectionString(const QString &server, const QString &database, const QString &login,
                              const QString &password);

// Builds the connection string, replaces DbConn and opens it. A failed open
// is not turned into False: the RuntimeError travels out to the caller.
bool OpenDbConnection(const QString &server, const QString &database, const QString &login,
                      const QString &password);

// The login window's connect step: reads the four database settings and
// opens a fresh DbConn; "数据库连接失败!" only on a False result.
bool ConnectDatabase();

} // namespace quorvale
