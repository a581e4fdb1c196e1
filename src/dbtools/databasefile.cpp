#include "dbtools/databasefile.h"

#include "dbtools/demodata.h"
#include "dbtools/embeddeddatabase.h"
#include "dbtools/newfile.h"
#include "dbtools/schemascript.h"
#include "runtime/runtimeerror.h"

#include <QSqlQuery>

namespace quorvale {

namespace {

void pragma(const ConnectionPtr &connection, const QString &setting)
{
    QSqlQuery query(connection->database());
    query.exec(QStringLiteral("PRAGMA ") + setting);
}

void fill(const QString &path, const DatabaseFileOptions &options)
{
    ConnectionPtr connection = openEmbeddedDatabase(path, true);
    // Nobody uses the file before the rename: a crash leaves only a stray temporary.
    pragma(connection, QStringLiteral("synchronous = OFF"));
    pragma(connection, QStringLiteral("journal_mode = MEMORY"));
    createSchema(*connection);
    if (options.demo || options.scale > 0)
        loadDemoData(connection->database(), options.today, options.scale);
    pragma(connection, QStringLiteral("journal_mode = DELETE"));
}

} // namespace

void createDatabaseFile(const QString &path, const DatabaseFileOptions &options)
{
    buildNewFile(path, options.force, [&](const QString &tempPath) { fill(tempPath, options); });
}

} // namespace quorvale
