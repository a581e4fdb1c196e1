#include "runtime/vb.h"

#include "runtime/runtimeerror.h"

#include <QRegularExpression>
#include <cmath>

namespace quorvale::vbrt {

namespace {
bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}
} // namespace

double Val(const QString &text)
{
    // Collect the characters of the leading number, skipping blanks wherever
    // they occur, as the classic Val does ("1 2" is 12).
    QString digits;
    bool seenDigit = false, seenPoint = false, seenExp = false;
    qsizetype i = 0;
    const qsizetype n = text.size();
    auto skipBlanks = [&] {
        while (i < n && isBlank(text[i]))
            ++i;
    };
    skipBlanks();
    if (i < n && (text[i] == u'-' || text[i] == u'+'))
        digits += text[i++];
    for (; i < n; ++i) {
        const QChar c = text[i];
        if (isBlank(c))
            continue;
        if (c.isDigit() && c.unicode() < 128) {
            digits += c;
            seenDigit = true;
        } else if (c == u'.' && !seenPoint && !seenExp) {
            digits += c;
            seenPoint = true;
        } else if ((c == u'e' || c == u'E' || c == u'd' || c == u'D') && seenDigit && !seenExp) {
            // An exponent counts only when digits follow it.
            qsizetype j = i + 1;
            while (j < n && isBlank(text[j]))
                ++j;
            if (j < n && (text[j] == u'-' || text[j] == u'+'))
                ++j;
            while (j < n && isBlank(text[j]))
                ++j;
            if (j >= n || !text[j].isDigit())
                break;
            digits += u'e';
            seenExp = true;
            ++i;
            skipBlanks();
            if (i < n && (text[i] == u'-' || text[i] == u'+'))
                digits += text[i];
            else
                --i;
        } else {
            break;
        }
    }
    if (!seenDigit)
        return 0.0;
    bool ok = false;
    const double v = digits.toDouble(&ok);
    return ok ? v : 0.0;
}

qint16 CInt(double value)
{
    const double r = std::nearbyint(value); // the default rounding mode is half to even
    if (!std::isfinite(r) || r < -32768.0 || r > 32767.0)
        throw RuntimeError(ErrorNumber::Overflow, QStringLiteral("溢出"));
    return static_cast<qint16>(r);
}

QString Str(double value)
{
    if (value == 0.0)
        return QStringLiteral("0");
    QString s = QString::number(value, 'f', 15);
    if (s.contains(u'.')) {
        while (s.endsWith(u'0'))
            s.chop(1);
        if (s.endsWith(u'.'))
            s.chop(1);
    }
    // Trim representation noise beyond 15 significant digits.
    const QString shortest = QString::number(value, 'g', 15);
    if (!shortest.contains(u'e'))
        return shortest;
    return s;
}

QDate toDate(const QString &text)
{
    static const QRegularExpression ymd(QStringLiteral(
        "^\\s*(\\d{1,4})\\s*[-/.年]\\s*(\\d{1,2})\\s*[-/.月]\\s*(\\d{1,2})\\s*日?"
        "(?:\\s+\\d{1,2}:\\d{1,2}(?::\\d{1,2}(?:\\.\\d+)?)?)?\\s*$"));
    const QRegularExpressionMatch m = ymd.match(text);
    if (!m.hasMatch())
        return {};
    int year = m.captured(1).toInt();
    if (m.captured(1).size() <= 2)
        year += year < 30 ? 2000 : 1900;
    if (year < 100)
        return {};
    const QDate d(year, m.captured(2).toInt(), m.captured(3).toInt());
    return d.isValid() ? d : QDate();
}

bool IsDate(const QString &text) { return toDate(text).isValid(); }

QString Trim(const QString &text)
{
    qsizetype b = 0, e = text.size();
    while (b < e && text[b] == u' ')
        ++b;
    while (e > b && text[e - 1] == u' ')
        --e;
    return text.mid(b, e - b);
}

QString Left(const QString &text, int length) { return text.left(std::max(0, length)); }
QString Right(const QString &text, int length) { return text.right(std::max(0, length)); }

QString formatChineseDate(const QDate &date) { return date.toString(QStringLiteral("yyyy年MM月dd日")); }
QString formatYearMonth(const QDate &date) { return date.toString(QStringLiteral("yyyyMM")); }
QString formatIsoDate(const QDate &date) { return date.toString(QStringLiteral("yyyy-MM-dd")); }

} // namespace quorvale::vbrt
