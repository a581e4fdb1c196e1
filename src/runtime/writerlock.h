#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <memory>

class QLockFile;

namespace quorvale {

// The exclusive lock every Quorvale writer takes on an output it reads and
// rewrites (a workbook that gets a sheet): a lock file beside the target,
// held from reading the old content until the new content is in place, so
// two runs writing different sheets of one workbook cannot lose either.
// A lock left by a process that died is taken over.
class WriterLock {
  public:
    using Waiting = std::function<void(const QString &message)>;

    // Waits up to `timeout` for another writer to finish, calling `waiting`
    // once when it has to wait; throws RuntimeError when the time runs out.
    // Where no lock file can be made (a read-only folder) nothing is locked:
    // the write itself will fail there with its own message.
    WriterLock(const QString &target, std::chrono::milliseconds timeout,
               const Waiting &waiting = {});
    ~WriterLock();
    WriterLock(const WriterLock &) = delete;
    WriterLock &operator=(const WriterLock &) = delete;

    static QString lockPathOf(const QString &target);

  private:
    std::unique_ptr<QLockFile> m_lock;
    QString m_path;
};

} // namespace quorvale
