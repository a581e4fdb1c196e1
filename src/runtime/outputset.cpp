#include "runtime/outputset.h"

#include "runtime/runtimeerror.h"
#include "runtime/tempfilecleanup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QCoreApplication>

#include <filesystem>

namespace quorvale {

namespace {

// The earlier content of a target, kept as a hard link until every output
// is in place.
struct Backup {
    QString target;
    QString saved; // empty: the target did not exist
};

QString backupPath(const QString &target, int n)
{
    const QFileInfo info(target);
    return info.absoluteDir().filePath(QStringLiteral(".%1.%2.%3.bak")
                                           .arg(info.fileName())
                                           .arg(QCoreApplication::applicationPid())
                                           .arg(n));
}

std::filesystem::path toPath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}

} // namespace

StagedFile &OutputSet::add(const QString &target)
{
    for (const auto &file : m_files)
        if (isSameFile(file->target(), target))
            throw RuntimeError(ErrorNumber::PathFileAccessError,
                               QStringLiteral("“%1”被指定为两个输出文件")
                                   .arg(QDir::toNativeSeparators(target)));
    m_files.push_back(std::make_unique<StagedFile>(target));
    return *m_files.back();
}

void OutputSet::discard(StagedFile &file)
{
    std::erase_if(m_files, [&](const auto &f) { return f.get() == &file; });
}

void OutputSet::commit()
{
    for (const auto &file : m_files)
        file->finish();
    if (m_files.size() == 1) {
        m_files.front()->commit();
        return;
    }
    namespace fs = std::filesystem;
    std::vector<Backup> replaced;
    std::vector<QString> kept;
    auto dropBackups = [&kept] {
        for (const QString &saved : kept) {
            QFile::remove(saved);
            unregisterTemporaryFile(saved);
        }
    };
    try {
        for (const auto &file : m_files) {
            Backup backup{file->target(), QString()};
            if (QFileInfo::exists(file->target())) {
                backup.saved = backupPath(file->target(), int(kept.size()));
                kept.push_back(backup.saved);
                registerTemporaryFile(backup.saved);
                std::error_code error;
                fs::remove(toPath(backup.saved), error);
                fs::create_hard_link(toPath(file->target()), toPath(backup.saved), error);
                if (error)
                    fs::copy_file(toPath(file->target()), toPath(backup.saved), error);
                if (error)
                    throw RuntimeError(ErrorNumber::PathFileAccessError,
                                       QStringLiteral("无法保存“%1”：不能保留原文件（%2）")
                                           .arg(QDir::toNativeSeparators(file->target()),
                                                QString::fromLocal8Bit(error.message())));
            }
            file->commit();
            replaced.push_back(backup);
        }
    } catch (...) {
        // Put back what was already replaced; the failing output's own
        // target is untouched by its failed rename.
        for (const Backup &b : replaced) {
            std::error_code error;
            if (b.saved.isEmpty())
                fs::remove(toPath(b.target), error);
            else
                fs::rename(toPath(b.saved), toPath(b.target), error);
        }
        dropBackups();
        throw;
    }
    dropBackups();
}

} // namespace quorvale
