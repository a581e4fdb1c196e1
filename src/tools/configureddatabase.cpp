#include "tools/configureddatabase.h"

#include "runtime/runtimeerror.h"
#include "runtime/settings.h"
#include "session/dbconnection.h"

namespace quorvale {

ConnectionPtr openConfiguredDatabase()
{
    const QString app = QStringLiteral("Quorvale");
    const QString section = QStringLiteral("DBConfig");
    const QString server = SettingsStore::GetSetting(app, section, QStringLiteral("Svr"));
    if (server.trimmed().isEmpty())
        throw RuntimeError(
            ErrorNumber::DatabaseError,
            QStringLiteral("no database is configured (set one with quorvale-admin "
                           "config --server S --login L --password P --database D)"));
    auto connection = std::make_shared<Connection>();
    connection->ConnectionString = buildConnectionString(
        server, SettingsStore::GetSetting(app, section, QStringLiteral("DBname")),
        SettingsStore::GetSetting(app, section, QStringLiteral("UID")),
        SettingsStore::GetSetting(app, section, QStringLiteral("PWD")));
    connection->ConnectionTimeout = 30;
    connection->Open();
    return connection;
}

} // namespace quorvale
