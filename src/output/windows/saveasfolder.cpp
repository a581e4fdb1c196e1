#include "output/windows/saveasfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quorvale {

namespace {

bool isWritableFolder(const QString &path)
{
    const QFileInfo folder(path);
    return folder.isDir() && folder.isWritable() && (folder.permissions() & QFile::WriteOwner);
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
