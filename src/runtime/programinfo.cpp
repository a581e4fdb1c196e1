#include "runtime/programinfo.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quorvale {

QString programTitle() { return QStringLiteral("Quorvale"); }

QString exeName()
{
    const QString path = QCoreApplication::applicationFilePath();
    return path.isEmpty() ? QStringLiteral("quorvale") : QFileInfo(path).completeBaseName();
}

} // namespace quorvale
