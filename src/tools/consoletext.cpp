#include "tools/consoletext.h"

#include <QStringDecoder>

namespace quorvale {

QString printableText(const QString &text)
{
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x20 || u == 0x7f || (u >= 0x80 && u < 0xa0))
            shown += QStringLiteral("\\x%1").arg(int(u), 2, 16, QLatin1Char('0'));
        else
            shown += c;
    }
    return shown;
}

QStringList utf8Arguments(int argc, char **argv, int &invalidIndex)
{
    invalidIndex = -1;
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(QByteArrayView(argv[i]));
        if (decoder.hasError() && invalidIndex < 0)
            invalidIndex = i;
        arguments << text;
    }
    return arguments;
}

} // namespace quorvale
