#include "runtime/programfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace quorvale {

QString programFile(const QString &name, ProgramFileKind kind, const QString &exeFolder)
{
    const QDir folder(exeFolder.isEmpty() ? QCoreApplication::applicationDirPath() : exeFolder);
    const QString beside = folder.filePath(name);
#ifdef Q_OS_WIN
    Q_UNUSED(kind);
    return beside;
#else
    if (QFileInfo::exists(beside))
        return beside;
    // Relative to the executable's folder, so an installation can be moved whole.
    const QString installed = kind == ProgramFileKind::Data
                                  ? QStringLiteral(QUORVALE_DATA_FROM_BIN)
                                  : QStringLiteral(QUORVALE_LIBRARY_FROM_BIN);
    const QString candidate = QDir::cleanPath(folder.filePath(installed + u'/' + name));
    return QFileInfo::exists(candidate) ? candidate : beside;
#endif
}

} // namespace quorvale
