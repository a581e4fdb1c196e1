#include "batch/exportdates.h"

#include "batch/usageerror.h"
#include "runtime/vb.h"

#include <QRegularExpression>

namespace quorvale {

namespace {

QDate firstDayOf(const QString &month)
{
    return QDate(month.left(4).toInt(), month.mid(4, 2).toInt(), 1);
}

} // namespace

QDate pickerDateArgument(const QString &option, const QString &text)
{
    const QDate date = vbrt::toDate(text);
    if (!date.isValid())
        throw UsageError(
            QStringLiteral("--%1: '%2' is not a date (use YYYY-MM-DD)").arg(option, text));
    return date;
}

QString resolveMonth(const QString &option, const QString &text, const QDate &today)
{
    static const QRegularExpression sixDigits(QStringLiteral("^[0-9]{6}$"));
    static const QRegularExpression before(QStringLiteral("^last-([0-9]{1,3})$"));
    if (sixDigits.match(text).hasMatch())
        return text;
    int back = -1;
    if (text == QLatin1String("this"))
        back = 0;
    else if (text == QLatin1String("last"))
        back = 1;
    else if (const auto m = before.match(text); m.hasMatch())
        back = m.captured(1).toInt();
    if (back < 0)
        throw UsageError(QStringLiteral("--%1: '%2' is not a month (use YYYYMM, this, last or "
                                        "last-N)")
                             .arg(option, text));
    return vbrt::formatYearMonth(QDate(today.year(), today.month(), 1).addMonths(-back));
}

QString resolveCutoff(const QString &text, const QDate &today, const QString &month)
{
    if (text == QLatin1String("today"))
        return today.toString(Qt::ISODate);
    if (text == QLatin1String("month-end")) {
        const QDate first = firstDayOf(month);
        return first.addDays(first.daysInMonth() - 1).toString(Qt::ISODate);
    }
    pickerDateArgument(QStringLiteral("cutoff"), text);
    return text;
}

std::pair<QString, QString> resolveReceipts(const QString &text, const QString &month)
{
    if (text == QLatin1String("month")) {
        const QDate first = firstDayOf(month);
        return {first.toString(Qt::ISODate),
                first.addDays(first.daysInMonth() - 1).toString(Qt::ISODate)};
    }
    const qsizetype colon = text.indexOf(u':');
    if (colon <= 0 || colon == text.size() - 1 || text.indexOf(u':', colon + 1) >= 0)
        throw UsageError(
            QStringLiteral("--receipts takes FIRST:LAST or month, got '%1'").arg(text));
    const QString first = text.left(colon), last = text.mid(colon + 1);
    if (pickerDateArgument(QStringLiteral("receipts"), first) > pickerDateArgument(QStringLiteral("receipts"), last))
        throw UsageError(QStringLiteral("--receipts: the first date is after the last"));
    return {first, last};
}

} // namespace quorvale
