#include "output/officeoverview.h"

#include <algorithm>

namespace quorvale {

Amount Amount::parse(const QString &text)
{
    const QString t = text.trimmed();
    const bool negative = t.startsWith(QLatin1Char('-'));
    const QString digits = negative ? t.mid(1) : t;
    const qsizetype dot = digits.indexOf(QLatin1Char('.'));
    const QString whole = dot < 0 ? digits : digits.left(dot);
    const QString fraction = dot < 0 ? QString() : digits.mid(dot + 1);
    const auto allDigits = [](const QString &s) {
        return std::all_of(s.begin(), s.end(), [](QChar c) { return c.isDigit(); });
    };
    if ((whole.isEmpty() && fraction.isEmpty()) || !allDigits(whole) || !allDigits(fraction) ||
        whole.size() > 14)
        return {};
    qint64 units =
        whole.toLongLong() * 10000 + fraction.left(4).leftJustified(4, u'0').toLongLong();
    // Finer fractions are rounded half up, as the grid would show them.
    if (fraction.size() > 4 && fraction.at(4) >= u'5')
        ++units;
    return Amount(negative ? -units : units);
}

QString Amount::toText() const
{
    const qint64 a = m_units < 0 ? -m_units : m_units;
    QString text = QString::number(a / 10000);
    if (const qint64 f = a % 10000) {
        QString fraction = QStringLiteral("%1").arg(f, 4, 10, QLatin1Char('0'));
        while (fraction.endsWith(QLatin1Char('0')))
            fraction.chop(1);
        text += QLatin1Char('.') + fraction;
    }
    return m_units < 0 ? QLatin1Char('-') + text : text;
}

} // namespace quorvale
