#include "tsql/tsqldatetime.h"

#include "tsql/tsqlerror.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

namespace quorvale {

QString tsqlDateConversionMessage()
{
    return QStringLiteral(
        "Conversion failed when converting date and/or time from character string.");
}

namespace {

[[noreturn]] void conversionFailed()
{
    throw TsqlError(tsqlDateConversionMessage());
}

QTime parseTime(const QString &t)
{
    static const QRegularExpression re(QStringLiteral(
        "^(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2})(?:[.:](\\d{1,3}))?)?\\s*([AaPp][Mm])?$"));
    const auto m = re.match(t);
    if (!m.hasMatch())
        conversionFailed();
    int h = m.captured(1).toInt();
    const int mi = m.captured(2).toInt();
    const int s = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
    const QString ampm = m.captured(5).toUpper();
    if (!ampm.isEmpty()) {
        if (h < 1 || h > 12)
            conversionFailed();
        if (ampm == QLatin1String("PM") && h != 12)
            h += 12;
        if (ampm == QLatin1String("AM") && h == 12)
            h = 0;
    }
    const QTime time(h, mi, s);
    if (!time.isValid())
        conversionFailed();
    return time;
}

} // namespace

QString tsqlDateTimeFromString(const QString &text)
{
    const QString t = text.trimmed();
    QDate date(1900, 1, 1);
    QTime time(0, 0);
    if (!t.isEmpty()) {
        static const QRegularExpression separated(
            QStringLiteral("^(\\d{4})([-/.])(\\d{1,2})\\2(\\d{1,2})(?:(?:\\s+|T)(.+))?$"));
        static const QRegularExpression compact(
            QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})(?:\\s+(.+))?$"));
        static const QRegularExpression timeOnly(QStringLiteral("^\\d{1,2}:\\d"));
        QString timeText;
        if (const auto m = separated.match(t); m.hasMatch()) {
            date = QDate(m.captured(1).toInt(), m.captured(3).toInt(), m.captured(4).toInt());
            timeText = m.captured(5);
        } else if (const auto c = compact.match(t); c.hasMatch()) {
            date = QDate(c.captured(1).toInt(), c.captured(2).toInt(), c.captured(3).toInt());
            timeText = c.captured(4);
        } else if (timeOnly.match(t).hasMatch()) {
            timeText = t;
        } else {
            conversionFailed();
        }
        // datetime's range starts in 1753.
        if (!date.isValid() || date.year() < 1753)
            conversionFailed();
        if (!timeText.isEmpty())
            time = parseTime(timeText.trimmed());
    }
    return date.toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char(' ') +
           time.toString(QStringLiteral("HH:mm:ss"));
}

} // namespace quorvale
