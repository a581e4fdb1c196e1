#include "output/windows/desktopopen.h"

#include <QDesktopServices>
#include <QUrl>

#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
#include <QMimeDatabase>
#include <QProcess>
#endif

namespace quorvale {

namespace {

// On freedesktop systems Qt hands the file to xdg-open, which is always
// started; whether a program will take the file is xdg-mime's answer.
bool desktopHasProgramFor(const QString &path)
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    const QString type =
        QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension).name();
    QProcess query;
    query.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"), type});
    if (!query.waitForFinished(5000) || query.exitStatus() != QProcess::NormalExit ||
        query.exitCode() != 0)
        return false;
    return !query.readAllStandardOutput().trimmed().isEmpty();
#else
    Q_UNUSED(path);
    return true;
#endif
}

} // namespace

bool openWithDesktopProgram(const QString &path)
{
    return desktopHasProgramFor(path) && QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

} // namespace quorvale
