#include "dbtools/newfile.h"

#include "runtime/runtimeerror.h"
#include "runtime/stagedfile.h"

#include <QDir>
#include <QFileInfo>

namespace quorvale {

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

    StagedFile staged(target.absoluteFilePath());
    try {
        fill(staged.temporaryPath());
    } catch (const RuntimeError &error) {
        throw RuntimeError(error.number(), QStringLiteral("%1: %2").arg(path, error.description()));
    }
    staged.commit();
}

} // namespace quorvale
