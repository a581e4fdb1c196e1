#include "dbtools/configureddatabase.h"

#include "db/configuredconnection.h"
#include "runtime/runtimeerror.h"
#include "runtime/settings.h"

namespace quorvale {

ConnectionPtr openConfiguredDatabase()
{
    const DatabaseSettings settings = DatabaseSettings::read();
    if (settings.server.trimmed().isEmpty())
        throw RuntimeError(
            ErrorNumber::DatabaseError,
            QStringLiteral("no database is configured (set one with quorvale-admin "
                           "config --server S --login L --password P --database D)"));
    return openDatabaseConnection(settings);
}

} // namespace quorvale
