#pragma once

#include <QFile>
#include <QString>
#include <memory>
#include <optional>

namespace quorvale {

// One output file written the safe way: into a temporary file beside the
// target, every write and the close checked, synced to disk, and renamed
// over the target only when complete. Until commit() the target is
// untouched; destroying an uncommitted file removes the temporary, and so
// does a SIGINT/SIGTERM/SIGHUP (see tempfilecleanup.h).
//
// Failures throw RuntimeError with a message naming the file and the cause
// ("磁盘空间不足" for a full disk, the system's own text otherwise).
class StagedFile {
  public:
    // Checks that the target can be written (its folder exists and is
    // writable, it is not a folder) and creates the temporary file, with the
    // given permissions (a file holding a password is private from the start).
    explicit StagedFile(QString target,
                        std::optional<QFile::Permissions> permissions = std::nullopt);
    ~StagedFile();
    StagedFile(const StagedFile &) = delete;
    StagedFile &operator=(const StagedFile &) = delete;

    const QString &target() const { return m_target; }
    QString temporaryPath() const;
    // Where the content goes; writes that fail are remembered with their cause.
    QIODevice &device();

    // Throws the cause of the first write that failed, if one has: a writer
    // that then gave up with a generic error of its own (a PDF engine that
    // could not even start) is reported by what really happened.
    void checkWrites() const;
    // Flushes, syncs and closes the temporary file; throws on any failure
    // seen since it was opened.
    void finish();
    // Renames the finished temporary file over the target.
    void commit();

  private:
    class CheckedFile;
    QString m_target;
    std::unique_ptr<CheckedFile> m_file;
    std::optional<QFile::Permissions> m_permissions;
    bool m_finished = false;
    bool m_committed = false;
};

// The cause of the file operation that just failed: errno, or on Windows
// the system's own error code.
int lastFileError();
// Its text: the full-disk case in the users' words, anything else as the
// system says it.
QString fileErrorText(int errorNumber);

// Whether two paths name the same file: the same inode when both exist,
// otherwise the same canonical folder and name (ignoring case where the
// file system does).
bool isSameFile(const QString &a, const QString &b);

} // namespace quorvale
