#include "session/dbconnection.h"

#include "db/configuredconnection.h"
#include "runtime/settings.h"
#include "session/session.h"

namespace quorvale {

bool ConnectDatabase(Session &session)
{
    // The new connection is the session's even when it fails to open.
    session.DbConn = configuredConnection(DatabaseSettings::read());
    session.DbConn->Open();
    return true;
}

} // namespace quorvale
