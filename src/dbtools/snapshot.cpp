#include "dbtools/snapshot.h"

#include "db/sqlerrortext.h"
#include "dbtools/embeddeddatabase.h"
#include "dbtools/newfile.h"
#include "dbtools/schemascript.h"
#include "runtime/runtimeerror.h"

#include <QSqlError>
#include <QSqlQuery>

namespace quorvale {

namespace {

void pragma(Connection &connection, const char *setting)
{
    QSqlQuery query(connection.database());
    query.exec(QStringLiteral("PRAGMA ") + QLatin1String(setting));
}

} // namespace

qint64 writeSnapshot(const ConnectionPtr &source, const QString &path, bool replace,
                     const TableCopyProgress &progress,
                     const std::function<void(const QList<TableCopyCount> &)> &copied)
{
    qint64 rows = 0;
    buildNewFile(path, replace, [&](const QString &tempPath) {
        ConnectionPtr target = openEmbeddedDatabase(tempPath, true);
        // Nobody uses the file before the rename: a crash leaves only a stray temporary.
        pragma(*target, "synchronous = OFF");
        pragma(*target, "journal_mode = MEMORY");
        QSqlDatabase db = target->database();
        if (!db.transaction())
            throw RuntimeError(ErrorNumber::DatabaseError, sqlErrorText(db.lastError()));
        createSchema(*target);
        const QList<TableCopyCount> counts = copySchemaTables(source, *target, progress);
        if (!db.commit())
            throw RuntimeError(ErrorNumber::DatabaseError, sqlErrorText(db.lastError()));
        pragma(*target, "journal_mode = DELETE");
        if (copied)
            copied(counts);
        QStringList different;
        for (const TableCopyCount &c : counts) {
            rows += c.read;
            if (c.read != c.written)
                different << c.table;
        }
        if (!different.isEmpty())
            throw RuntimeError(ErrorNumber::DatabaseError,
                               QStringLiteral("rows read and written differ for %1; no file "
                                              "written")
                                   .arg(different.join(QStringLiteral(", "))));
    });
    return rows;
}

} // namespace quorvale
