#include "xlsx/xlsxpartspool.h"

#include "xlsx/xlsxerror.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QString>

#include <algorithm>
#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#elif defined(Q_OS_UNIX)
#include <fcntl.h>
#include <unistd.h>
#endif

namespace quorvale::xlsx {

namespace {

[[noreturn]] void spoolFailed()
{
    throw Error(ErrorNumber::PathFileAccessError,
                QStringLiteral("无法在临时文件夹中暂存工作表（磁盘空间不足？）"));
}

bool seekTo(std::FILE *file, qint64 offset, int whence)
{
#ifdef Q_OS_WIN
    return _fseeki64(file, offset, whence) == 0;
#else
    return fseeko(file, off_t(offset), whence) == 0;
#endif
}

// An unnamed file in the user's temporary folder where the system offers one
// (TMPDIR is honoured); std::tmpfile's own folder otherwise. Windows has no
// unnamed files: there it is a file the system deletes when it is closed,
// however the process ends (std::tmpfile would try the drive's root).
std::FILE *openAnonymousFile()
{
#ifdef Q_OS_WIN
    const QString path = QDir::toNativeSeparators(
        QDir(QDir::tempPath())
            .filePath(QStringLiteral("quorvale-%1-%2.spool")
                          .arg(GetCurrentProcessId())
                          .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'))));
    const HANDLE handle = CreateFileW(
        reinterpret_cast<const wchar_t *>(path.utf16()), GENERIC_READ | GENERIC_WRITE, 0,
        nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return nullptr;
    const int fd = _open_osfhandle(intptr_t(handle), _O_RDWR | _O_BINARY);
    if (fd < 0) {
        CloseHandle(handle);
        return nullptr;
    }
    if (std::FILE *file = _fdopen(fd, "w+b"))
        return file;
    _close(fd);
    return nullptr;
#else
#ifdef O_TMPFILE
    const QByteArray folder = QFile::encodeName(QDir::tempPath());
    const int fd = ::open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd >= 0) {
        if (std::FILE *file = ::fdopen(fd, "w+b"))
            return file;
        ::close(fd);
    }
#endif
    return std::tmpfile();
#endif
}

} // namespace

PartSpool::PartSpool() : m_file(openAnonymousFile()) {}

PartSpool::~PartSpool()
{
    if (m_file)
        std::fclose(m_file);
}

PartSpool::Span PartSpool::store(QByteArrayView bytes)
{
    std::lock_guard lock(m_mutex);
    if (!seekTo(m_file, 0, SEEK_END) ||
        std::fwrite(bytes.data(), 1, size_t(bytes.size()), m_file) != size_t(bytes.size()) ||
        std::fflush(m_file) != 0)
        spoolFailed();
    const Span span{m_end, bytes.size()};
    m_end += bytes.size();
    return span;
}

void PartSpool::read(const Span &span, const std::function<void(QByteArrayView)> &sink) const
{
    std::lock_guard lock(m_mutex);
    if (!seekTo(m_file, span.offset, SEEK_SET))
        spoolFailed();
    QByteArray chunk(1 << 20, Qt::Uninitialized);
    for (qint64 left = span.length; left > 0;) {
        const size_t want = size_t(std::min<qint64>(left, chunk.size()));
        if (std::fread(chunk.data(), 1, want, m_file) != want)
            spoolFailed();
        sink(QByteArrayView(chunk.constData(), qsizetype(want)));
        left -= qint64(want);
    }
}

} // namespace quorvale::xlsx
