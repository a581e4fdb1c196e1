#include "tools/newfile.h"

#include "runtime/runtimeerror.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace quorvale {

namespace {

[[noreturn]] void fileError(const QString &text)
{
    throw RuntimeError(ErrorNumber::PermissionDenied, text);
}

// The data must be on the disk before the rename makes it the target.
void flushToDisk(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        fileError(QStringLiteral("cannot reopen %1: %2").arg(path, file.errorString()));
#ifdef Q_OS_WIN
    const bool synced = _commit(file.handle()) == 0;
#else
    const bool synced = ::fsync(file.handle()) == 0;
#endif
    if (!synced)
        fileError(QStringLiteral("cannot write %1 to the disk: %2")
                      .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
}

// So that the rename itself survives a power cut.
void flushFolder(const QString &folder)
{
#ifndef Q_OS_WIN
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
#else
    Q_UNUSED(folder);
#endif
}

} // namespace

void buildNewFile(const QString &path, bool replace,
                  const std::function<void(const QString &tempPath)> &fill)
{
    const QFileInfo target(path);
    if (target.exists() && !replace)
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
        fileError(QStringLiteral("cannot write in %1: %2")
                      .arg(target.absolutePath(), temp.errorString()));
    temp.close();
    try {
        fill(temp.fileName());
        flushToDisk(temp.fileName());
    } catch (const RuntimeError &error) {
        throw RuntimeError(error.number(), QStringLiteral("%1: %2").arg(path, error.description()));
    }

    // A temporary file is private to its owner; the result is an ordinary file.
    QFile::setPermissions(temp.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser |
                                               QFile::WriteUser | QFile::ReadGroup |
                                               QFile::ReadOther);
    std::error_code failure;
    std::filesystem::rename(std::filesystem::path(temp.fileName().toStdU16String()),
                            std::filesystem::path(target.absoluteFilePath().toStdU16String()),
                            failure);
    if (failure)
        fileError(QStringLiteral("cannot replace %1: %2")
                      .arg(path, QString::fromLocal8Bit(failure.message())));
    temp.setAutoRemove(false);
    flushFolder(target.absolutePath());
}

} // namespace quorvale
