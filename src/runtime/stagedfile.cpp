#include "runtime/stagedfile.h"

#include "runtime/runtimeerror.h"
#include "runtime/tempfilecleanup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <optional>
#include <tuple>
#include <utility>
#include <cstdio>
#include <cstring>
#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quorvale {

namespace {

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

[[noreturn]] void fail(const QString &target, const QString &why)
{
    throw RuntimeError(ErrorNumber::PathFileAccessError,
                       QStringLiteral("无法保存“%1”：%2").arg(shown(target), why));
}

} // namespace

int lastFileError()
{
#ifdef Q_OS_WIN
    const DWORD code = GetLastError();
    return code ? int(code) : ERROR_WRITE_FAULT;
#else
    return errno ? errno : EIO;
#endif
}

QString fileErrorText(int errorNumber)
{
#ifdef Q_OS_WIN
    const bool full = errorNumber == ERROR_DISK_FULL || errorNumber == ERROR_HANDLE_DISK_FULL;
#else
    const bool full = errorNumber == ENOSPC;
#endif
    if (full)
        return QStringLiteral("磁盘空间不足");
#ifdef Q_OS_WIN
    return qt_error_string(errorNumber); // in the system's own language
#else
    return QString::fromLocal8Bit(std::strerror(errorNumber));
#endif
}

// A file that remembers the errno of the first write that failed, so the
// message can name the cause instead of Qt's generic one. Opened unbuffered,
// so that every write the system sees is its own; small writes (a PDF
// writer's, a zip writer's) are gathered here into chunks first, since a
// system call each made printing a report a fifth slower.
class StagedFile::CheckedFile : public QFile {
  public:
    using QFile::QFile;
    int failure = 0;

    // Writes what is gathered; false once any write has failed.
    bool drain()
    {
        if (!m_pending.isEmpty()) {
            const QByteArray chunk = std::exchange(m_pending, QByteArray());
            writeThrough(chunk.constData(), chunk.size());
        }
        return failure == 0;
    }

    // Drops what is gathered: the file is being thrown away.
    void abandon() { m_pending.clear(); }

    bool seek(qint64 offset) override { return drain() && QFile::seek(offset); }
    qint64 size() const override
    {
        const_cast<CheckedFile *>(this)->drain();
        return QFile::size();
    }
    void close() override
    {
        if (isOpen())
            drain();
        QFile::close();
    }

  protected:
    qint64 writeData(const char *data, qint64 length) override
    {
        if (failure)
            return -1;
        if (m_pending.size() + length > kChunk && !drain())
            return -1;
        if (length >= kChunk)
            return writeThrough(data, length);
        m_pending.append(data, length);
        return length;
    }

  private:
    static constexpr qint64 kChunk = 64 * 1024;

    qint64 writeThrough(const char *data, qint64 length)
    {
        errno = 0;
#ifdef Q_OS_WIN
        SetLastError(0);
#endif
        const qint64 written = QFile::writeData(data, length);
        if (written != length && failure == 0)
            failure = lastFileError();
        return written;
    }

    QByteArray m_pending;
};

StagedFile::StagedFile(QString target, std::optional<QFile::Permissions> permissions)
    : m_target(std::move(target)), m_permissions(permissions)
{
    const QFileInfo info(m_target);
    const QFileInfo folder(info.absolutePath());
    if (!folder.exists())
        fail(m_target, QStringLiteral("文件夹“%1”不存在").arg(shown(folder.absoluteFilePath())));
    if (!folder.isDir())
        fail(m_target, QStringLiteral("“%1”不是文件夹").arg(shown(folder.absoluteFilePath())));
    if (info.isDir())
        fail(m_target, QStringLiteral("同名的文件夹已存在"));
    // The read-only flag is honoured even where the account could override it
    // (an administrator), as Excel does.
    if (info.exists() && (!info.isWritable() || !(info.permissions() & QFile::WriteOwner)))
        throw RuntimeError(ErrorNumber::PermissionDenied,
                           QStringLiteral("无法保存“%1”：文件为只读，或正被其他程序使用")
                               .arg(shown(m_target)));
    if (!(folder.permissions() & QFile::WriteOwner))
        fail(m_target, QStringLiteral("文件夹为只读，不能写入"));
    const QString temp = info.absoluteDir().filePath(
        QStringLiteral(".%1.%2.%3.tmp")
            .arg(info.fileName())
            .arg(QCoreApplication::applicationPid())
            .arg(QRandomGenerator::global()->generate() & 0xffff, 4, 16, QLatin1Char('0')));
    m_file = std::make_unique<CheckedFile>(temp);
    registerTemporaryFile(temp);
    // Unbuffered: CheckedFile gathers writes itself and sees each failure's errno.
    const auto mode = QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered;
    if (!(permissions ? m_file->open(mode, *permissions) : m_file->open(mode))) {
        unregisterTemporaryFile(temp);
        if (!folder.isWritable() || !(folder.permissions() & QFile::WriteOwner))
            fail(m_target, QStringLiteral("文件夹为只读，不能写入"));
        fail(m_target, m_file->errorString());
    }
}

StagedFile::~StagedFile()
{
    if (m_committed)
        return;
    m_file->abandon();
    m_file->close();
    QFile::remove(m_file->fileName());
    unregisterTemporaryFile(m_file->fileName());
}

QString StagedFile::temporaryPath() const
{
    return m_file->fileName();
}

QIODevice &StagedFile::device()
{
    return *m_file;
}

void StagedFile::checkWrites() const
{
    m_file->drain();
    if (m_file->failure)
        fail(m_target, fileErrorText(m_file->failure));
}

void StagedFile::finish()
{
    if (m_finished)
        return;
    checkWrites();
    if (!m_file->flush())
        fail(m_target, m_file->failure ? fileErrorText(m_file->failure) : m_file->errorString());
#ifdef Q_OS_WIN
    const bool synced =
        FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(m_file->handle())));
#else
    const bool synced = ::fsync(m_file->handle()) == 0;
#endif
    if (!synced)
        fail(m_target, fileErrorText(lastFileError()));
    m_file->close();
    if (m_file->error() != QFileDevice::NoError)
        fail(m_target, m_file->errorString());
    // A temporary file is private to its owner; the output is an ordinary
    // file unless it was asked to stay private.
    QFile::setPermissions(m_file->fileName(),
                          m_permissions.value_or(QFile::ReadOwner | QFile::WriteOwner |
                                                 QFile::ReadUser | QFile::WriteUser |
                                                 QFile::ReadGroup | QFile::ReadOther));
    m_finished = true;
}

void StagedFile::commit()
{
    finish();
    // Replaces the target in one step: no moment without a whole file.
#ifdef Q_OS_WIN
    const std::wstring from = QDir::toNativeSeparators(m_file->fileName()).toStdWString();
    const std::wstring to =
        QDir::toNativeSeparators(QFileInfo(m_target).absoluteFilePath()).toStdWString();
    const bool renamed = MoveFileExW(from.c_str(), to.c_str(),
                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
#else
    const QByteArray from = QFile::encodeName(m_file->fileName());
    const QByteArray to = QFile::encodeName(QFileInfo(m_target).absoluteFilePath());
    const bool renamed = std::rename(from.constData(), to.constData()) == 0;
#endif
    if (!renamed)
        fail(m_target, fileErrorText(lastFileError()));
    unregisterTemporaryFile(m_file->fileName());
    m_committed = true;
}

bool isSameFile(const QString &a, const QString &b)
{
    const QFileInfo fa(a), fb(b);
#ifdef Q_OS_WIN
    // The volume and file index: Windows' device and inode.
    const auto identity = [](const QString &path) -> std::optional<std::tuple<DWORD, DWORD, DWORD>> {
        const HANDLE handle = CreateFileW(
            reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(path).utf16()), 0,
            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
            FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle == INVALID_HANDLE_VALUE)
            return std::nullopt;
        BY_HANDLE_FILE_INFORMATION info{};
        const bool known = GetFileInformationByHandle(handle, &info);
        CloseHandle(handle);
        if (!known)
            return std::nullopt;
        return std::make_tuple(info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow);
    };
    if (const auto ia = identity(a), ib = identity(b); ia && ib)
        return *ia == *ib;
#else
    struct stat sa {}, sb {};
    if (::stat(QFile::encodeName(a).constData(), &sa) == 0 &&
        ::stat(QFile::encodeName(b).constData(), &sb) == 0)
        return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
#endif
    // A file that does not exist yet: compare where it would be created.
    const QString dirA = QFileInfo(fa.absolutePath()).canonicalFilePath();
    const QString dirB = QFileInfo(fb.absolutePath()).canonicalFilePath();
    if (dirA.isEmpty() || dirB.isEmpty())
        return fa.absoluteFilePath() == fb.absoluteFilePath();
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    const Qt::CaseSensitivity cs = Qt::CaseInsensitive;
#else
    const Qt::CaseSensitivity cs = Qt::CaseSensitive;
#endif
    return dirA.compare(dirB, cs) == 0 && fa.fileName().compare(fb.fileName(), cs) == 0;
}

} // namespace quorvale
