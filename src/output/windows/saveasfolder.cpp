#include "output/windows/saveasfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace quorvale {

namespace {

bool isWritableFolder(const QString &path)
{
    const QFileInfo folder(path);
#ifdef Q_OS_WIN
    // Access rights decide there (Program Files for a clerk), not the
    // read-only flag a folder's permissions reflect: try a file.
    QTemporaryFile probe(QDir(path).filePath(QStringLiteral("quorvale-XXXXXX.tmp")));
    return folder.isDir() && probe.open();
#else
    return folder.isDir() && folder.isWritable() && (folder.permissions() & QFile::WriteOwner);
#endif
}

} // namespace

QString saveAsFolder(const QString &programFolder)
{
    if (isWritableFolder(programFolder))
        return programFolder;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty() && QFileInfo(documents).isDir())
        return documents;
    return QDir::homePath();
}

} // namespace quorvale
