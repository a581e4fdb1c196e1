#include "tools/consoletext.h"

#include <QStringDecoder>

#include <algorithm>

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

int displayWidth(const QString &text)
{
    int width = 0;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool wide = (u >= 0x1100 && u <= 0x115f) || (u >= 0x2e80 && u <= 0xa4cf) ||
                          (u >= 0xac00 && u <= 0xd7a3) || (u >= 0xf900 && u <= 0xfaff) ||
                          (u >= 0xfe30 && u <= 0xfe4f) || (u >= 0xff00 && u <= 0xff60) ||
                          (u >= 0xffe0 && u <= 0xffe6);
        width += c.isLowSurrogate() ? 0 : wide ? 2 : 1;
    }
    return width;
}

QString alignedTable(const QList<QStringList> &rows)
{
    QList<int> widths;
    for (const QStringList &row : rows)
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (widths.size() <= i)
                widths << 0;
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    QString out;
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            line += printableText(row[i]);
            if (i + 1 < row.size())
                line += QString(widths[i] - displayWidth(row[i]) + 2, u' ');
        }
        out += line + u'\n';
    }
    return out;
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
