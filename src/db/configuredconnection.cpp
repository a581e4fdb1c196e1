#include "db/configuredconnection.h"

#include "runtime/settings.h"

namespace quorvale {

QString buildConnectionString(const QString &server, const QString &database, const QString &login,
                              const QString &password)
{
    return QStringLiteral("Provider=SQLOLEDB.1;Password=") + password +
           QStringLiteral(";Persist Security Info=False;User ID=") + login +
           QStringLiteral(";Initial Catalog='") + database + QStringLiteral("';Data Source='") +
           server + QStringLiteral("'");
}

ConnectionPtr configuredConnection(const DatabaseSettings &settings)
{
    auto connection = std::make_shared<Connection>();
    connection->ConnectionString = buildConnectionString(settings.server, settings.database,
                                                         settings.login, settings.password);
    connection->ConnectionTimeout = 30;
    return connection;
}

ConnectionPtr openDatabaseConnection(const DatabaseSettings &settings)
{
    ConnectionPtr connection = configuredConnection(settings);
    connection->Open();
    return connection;
}

} // namespace quorvale
