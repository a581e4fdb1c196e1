#include "runtime/writerlock.h"

#include "runtime/runtimeerror.h"
#include "runtime/tempfilecleanup.h"

#include <QDir>
#include <QFileInfo>
#include <QElapsedTimer>
#include <QLockFile>
#include <QThread>

namespace quorvale {

QString WriterLock::lockPathOf(const QString &target)
{
    const QFileInfo info(target);
    return info.absoluteDir().filePath(QStringLiteral(".%1.lock").arg(info.fileName()));
}

WriterLock::WriterLock(const QString &target, std::chrono::milliseconds timeout,
                       const Waiting &waiting)
    : m_lock(std::make_unique<QLockFile>(lockPathOf(target))), m_path(lockPathOf(target))
{
    // An export may run for minutes: only a dead owner makes a lock stale.
    m_lock->setStaleLockTime(0);
    QElapsedTimer waited;
    waited.start();
    bool told = false;
    for (;;) {
        {
            // Taken and registered for removal in one step, as far as a
            // signal can tell; between tries a signal ends the wait at once.
            const DeferredSignals deferred;
            if (m_lock->tryLock(0)) {
                registerTemporaryFile(m_path);
                return;
            }
        }
        if (m_lock->error() != QLockFile::LockFailedError) {
            m_lock.reset();
            return;
        }
        qint64 pid = 0;
        QString host, application;
        m_lock->getLockInfo(&pid, &host, &application);
        if (waited.elapsed() >= timeout.count())
            throw RuntimeError(ErrorNumber::PermissionDenied,
                               QStringLiteral("无法保存“%1”：另一个 Quorvale 进程（%2）正在写入该文件，"
                                              "等待 %3 秒后仍未结束")
                                   .arg(QDir::toNativeSeparators(target))
                                   .arg(pid)
                                   .arg(timeout.count() / 1000));
        if (!told && waiting)
            waiting(QStringLiteral("waiting for another Quorvale writer (process %1) to finish "
                                   "with %2")
                        .arg(pid)
                        .arg(QDir::toNativeSeparators(target)));
        told = true;
        QThread::msleep(50);
    }
}

WriterLock::~WriterLock()
{
    if (!m_lock)
        return;
    m_lock->unlock();
    unregisterTemporaryFile(m_path);
}

} // namespace quorvale
