#include "tools/consoletext.h"


#include <algorithm>

namespace quorvale {

namespace {

bool isWide(char32_t c)
{
    return (c >= 0x1100 && c <= 0x115f) || (c >= 0x2e80 && c <= 0x303e) ||
           (c >= 0x3041 && c <= 0x33ff) || (c >= 0x3400 && c <= 0x4dbf) ||
           (c >= 0x4e00 && c <= 0x9fff) || (c >= 0xa000 && c <= 0xa4cf) ||
           (c >= 0xac00 && c <= 0xd7a3) || (c >= 0xf900 && c <= 0xfaff) ||
           (c >= 0xfe30 && c <= 0xfe4f) || (c >= 0xff00 && c <= 0xff60) ||
           (c >= 0xffe0 && c <= 0xffe6) || (c >= 0x20000 && c <= 0x3fffd);
}

} // namespace

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
    for (char32_t c : text.toUcs4()) {
        if (QChar::isMark(c))
            continue;
        width += isWide(c) ? 2 : 1;
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

} // namespace quorvale
