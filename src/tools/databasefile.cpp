#include "tools/databasefile.h"

#include "runtime/runtimeerror.h"
#include "tools/demodata.h"
#include "tools/embeddeddatabase.h"
#include "tools/schemascript.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QTemporaryFile>
#include <filesystem>
#include <system_error>

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
    const QFileInfo target(path);
    if (target.exists() && !options.force)
        throw RuntimeError(
            ErrorNumber::PathFileAccessError,
            QStringLiteral("%1 already exists (use --force to replace it)").arg(path));
    if (target.isDir())
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("%1 is a folder").arg(path));
    if (!target.absoluteDir().exists())
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("folder %1 does not exist").arg(target.absolutePath()));

    QTemporaryFile temp(target.absoluteFilePath() + QStringLiteral(".XXXXXX.tmp"));
    if (!temp.open())
        throw RuntimeError(ErrorNumber::PermissionDenied,
                           QStringLiteral("cannot write in %1: %2")
                               .arg(target.absolutePath(), temp.errorString()));
    temp.close();
    try {
        fill(temp.fileName(), options);
    } catch (const RuntimeError &error) {
        throw RuntimeError(error.number(), QStringLiteral("%1: %2").arg(path, error.description()));
    }

    // A temporary file is private to its owner; the database is an ordinary file.
    QFile::setPermissions(temp.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser |
                                               QFile::WriteUser | QFile::ReadGroup |
                                               QFile::ReadOther);
    std::error_code failure;
    std::filesystem::rename(std::filesystem::path(temp.fileName().toStdU16String()),
                            std::filesystem::path(target.absoluteFilePath().toStdU16String()),
                            failure);
    if (failure)
        throw RuntimeError(ErrorNumber::PermissionDenied,
                           QStringLiteral("cannot replace %1: %2")
                               .arg(path, QString::fromLocal8Bit(failure.message())));
    temp.setAutoRemove(false);
}

} // namespace quorvale
