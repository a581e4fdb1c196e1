#include "dbtools/embeddeddatabase.h"

namespace quorvale {

QString embeddedServer(const QString &path)
{
    return QStringLiteral("sqlite:") + path;
}

ConnectionPtr openEmbeddedDatabase(const QString &path, bool create)
{
    auto connection = std::make_shared<Connection>();
    connection->ConnectionString = Connection::embeddedConnectionString(path);
    connection->CreateIfMissing = create;
    connection->Open();
    return connection;
}

} // namespace quorvale
