#include "runtime/console.h"

#include <QStringDecoder>

#ifdef Q_OS_WIN
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#include <shellapi.h>
#endif

namespace quorvale {

QStringList consoleArguments(int argc, char **argv, int &invalidIndex)
{
    invalidIndex = -1;
    QStringList arguments;
#ifdef Q_OS_WIN
    Q_UNUSED(argc);
    Q_UNUSED(argv);
    int count = 0;
    wchar_t **wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; wide && i < count; ++i)
        arguments << QString::fromWCharArray(wide[i]);
    LocalFree(wide);
#else
    for (int i = 1; i < argc; ++i) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(QByteArrayView(argv[i]));
        if (decoder.hasError() && invalidIndex < 0)
            invalidIndex = i;
        arguments << text;
    }
#endif
    return arguments;
}

void useUtf8Console()
{
#ifdef Q_OS_WIN
    SetConsoleOutputCP(CP_UTF8);
    // Bytes out as written: a CSV's CRLF must not become CR CR LF.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
}

void useOffscreenPlatform()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef Q_OS_WIN
    if (!qEnvironmentVariableIsSet("QT_QPA_FONTDIR")) {
        wchar_t windows[MAX_PATH];
        const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
        if (length > 0 && length < MAX_PATH)
            qputenv("QT_QPA_FONTDIR",
                    (QString::fromWCharArray(windows, int(length)) + QStringLiteral("\\Fonts"))
                        .toUtf8());
    }
#endif
}

} // namespace quorvale
