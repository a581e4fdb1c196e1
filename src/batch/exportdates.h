#pragma once

#include <QDate>
#include <QString>
#include <utility>

namespace quorvale {

// Months and dates as a scheduled task writes them, so the same command line
// works every month. Each returns the concrete text the report is given;
// anything else throws UsageError naming the option.

// A real date as users type it (YYYY-MM-DD, YYYY/M/D …); throws UsageError
// naming the option otherwise.
QDate pickerDateArgument(const QString &option, const QString &text);

// "YYYYMM" (six digits), "this", "last", or "last-N" (N months before this one).
QString resolveMonth(const QString &option, const QString &text, const QDate &today);

// A real date as typed, "today", or "month-end": the last day of `month`
// ("YYYYMM"), given as YYYY-MM-DD.
QString resolveCutoff(const QString &text, const QDate &today, const QString &month);

// "FIRST:LAST" (real dates, FIRST not after LAST), or "month": the first to
// the last day of `month`.
std::pair<QString, QString> resolveReceipts(const QString &text, const QString &month);

} // namespace quorvale
