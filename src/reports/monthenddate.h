#pragma once

#include <QString>

namespace quorvale {

// Last day of a "YYYYMM" month as "YYYY-MM-DD". Built from the text, not a
// date: a month outside 1..12 (202400, 202413) gives "-30" and never fails.
QString MonthEndDate(const QString &month);

// First day of a "YYYYMM" month as "YYYY-MM-01", taken from the text as it
// stands (first four and last two characters).
QString monthFirstDay(const QString &month);

// A month text is valid when its first day is a date ("201908" -> 2019-08-01).
bool isValidMonthText(const QString &month);

} // namespace quorvale
