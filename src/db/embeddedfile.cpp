#include "db/embeddedfile.h"

#include "runtime/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace quorvale {

namespace {

// SQLite's primary result codes for the cases users meet.
constexpr int SqliteBusy = 5;
constexpr int SqliteLocked = 6;
constexpr int SqliteCorrupt = 11;
constexpr int SqliteNotADatabase = 26;

[[noreturn]] void refuse(const QString &path, const QString &what)
{
    throw RuntimeError(ErrorNumber::DatabaseError,
                       QStringLiteral("Cannot open database \"%1\": %2")
                           .arg(QDir::toNativeSeparators(path), what));
}

} // namespace

void checkEmbeddedDatabase(const QSqlDatabase &db, const QString &path)
{
    if (QFileInfo(path).size() == 0)
        refuse(path, QStringLiteral("the file is empty, not a database (quorvale-admin create-db "
                                    "makes one)"));
    QSqlQuery query(db);
    if (query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) && query.next()) {
        if (query.value(0).toInt() == 0)
            refuse(path, QStringLiteral("it holds no tables, so it is not a Quorvale database "
                                        "(quorvale-admin create-db makes one)"));
        return;
    }
    const QSqlError error = query.lastError();
    const QString text = error.driverText().isEmpty() ? error.text() : error.databaseText();
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case SqliteNotADatabase:
        refuse(path, QStringLiteral("the file is not a database (%1)").arg(text));
    case SqliteCorrupt:
        refuse(path, QStringLiteral("the file is damaged (%1)").arg(text));
    case SqliteBusy:
    case SqliteLocked:
        refuse(path, QStringLiteral("it is locked by another program (%1); try again when that "
                                    "program has finished")
                         .arg(text));
    default:
        refuse(path, text);
    }
}

} // namespace quorvale
