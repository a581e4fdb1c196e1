#include "reports/monthenddate.h"

#include "runtime/vb.h"

namespace quorvale {

namespace {

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

} // namespace

QString MonthEndDate(const QString &month)
{
    const QString year = vbrt::Left(month, 4);
    const QString mm = vbrt::Right(month, 2);
    const double number = vbrt::Val(mm);
    QString suffix = QStringLiteral("-30");
    if (number == 1 || number == 3 || number == 5 || number == 7 || number == 8 || number == 10 ||
        number == 12)
        suffix = QStringLiteral("-31");
    else if (number == 2)
        suffix = isLeapYear(int(vbrt::Val(year))) ? QStringLiteral("-29") : QStringLiteral("-28");
    return year + QLatin1Char('-') + mm + suffix;
}

QString monthFirstDay(const QString &month)
{
    return vbrt::Left(month, 4) + QLatin1Char('-') + vbrt::Right(month, 2) + QStringLiteral("-01");
}

bool isValidMonthText(const QString &month)
{
    return vbrt::IsDate(monthFirstDay(month));
}

} // namespace quorvale
