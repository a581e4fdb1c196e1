#include "runtime/programinfo.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quorvale {

QString programTitle() { return QStringLiteral("Quorvale"); }

QString programVersion()
{
    return QStringLiteral("%1.%2.%3")
        .arg(QUORVALE_VERSION_MAJOR)
        .arg(QUORVALE_VERSION_MINOR)
        .arg(QUORVALE_VERSION_PATCH);
}

QString exeName()
{
    const QString path = QCoreApplication::applicationFilePath();
    return path.isEmpty() ? QStringLiteral("quorvale") : QFileInfo(path).completeBaseName();
}

} // namespace quorvale
