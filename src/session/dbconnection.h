#pragma once

#include "platform/connection.h"

#include <QString>

namespace quorvale {

// The one connection of the process; replaced by every sign-in attempt.
extern ConnectionPtr DbConn;
// The connection string last built.
extern QString DbConnString;

// Builds the connection string, replaces DbConn and opens it. A failed open
// is not turned into False: the RuntimeError travels out to the caller.
bool OpenDbConnection(const QString &server, const QString &database, const QString &login,
                      const QString &password);

} // namespace quorvale
