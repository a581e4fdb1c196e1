#pragma once

#include <QDate>
#include <QString>

// The few classic string, number and date rules the windows rely on, kept
// exactly: reports depend on their quirks (Val stopping at the first letter,
// CInt overflowing at 16 bits).
namespace quorvale::vbrt {

// Numeric value of the leading number in text; blanks are skipped, parsing
// stops at the first character that cannot continue a number ("B203" -> 0).
double Val(const QString &text);

// Rounds half to even into a 16-bit integer; out of range raises error 6.
qint16 CInt(double value);

// Number written as the classic text conversion does: shortest form, no
// exponent for ordinary magnitudes ("10", "85.5", "-3").
QString Str(double value);

// True when the text is a calendar date in one of the forms users type
// (2024-03-31, 2024/3/5, 2024.03.05, 2024年3月5日, optionally with a time).
bool IsDate(const QString &text);
// The date IsDate accepted, or a null date.
QDate toDate(const QString &text);

// Removes leading and trailing blanks only (not tabs or line breaks).
QString Trim(const QString &text);
QString Left(const QString &text, int length);
QString Right(const QString &text, int length);

// "yyyy年mm月dd日", the form the windows print and export dates in.
QString formatChineseDate(const QDate &date);
// "YYYYMM", the month texts of the finance windows.
QString formatYearMonth(const QDate &date);
// "YYYY-MM-DD", the form dates are passed to SQL in.
QString formatIsoDate(const QDate &date);

} // namespace quorvale::vbrt
