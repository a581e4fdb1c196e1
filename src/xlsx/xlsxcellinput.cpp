#include "xlsx/xlsxcellinput.h"

#include <QDate>
#include <QTime>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace quorvale::xlsx {

namespace {

// Decimal with optional sign, point and exponent, blanks around it ignored,
// as Excel accepts when typing; "0120" is the number 120.
bool parseNumber(const QString &text, double &value)
{
    char buf[64];
    int n = 0;
    qsizetype i = 0, end = text.size();
    while (i < end && text[i] == u' ')
        ++i;
    while (end > i && text[end - 1] == u' ')
        --end;
    if (i == end || end - i >= qsizetype(sizeof buf))
        return false;
    if (text[i] == u'+' || text[i] == u'-') {
        if (text[i] == u'-')
            buf[n++] = '-';
        ++i;
    }
    int digits = 0, significant = 0;
    bool point = false, leading = true;
    for (; i < end; ++i) {
        const char16_t c = text[i].unicode();
        if (c >= u'0' && c <= u'9') {
            ++digits;
            if (c != u'0' || !leading) {
                leading = false;
                ++significant;
            }
            buf[n++] = char(c);
        } else if (c == u'.' && !point) {
            point = true;
            buf[n++] = '.';
        } else {
            break;
        }
    }
    if (digits == 0)
        return false;
    // A longer digit string is an identifier, not an amount: as a number its
    // last digits would be lost.
    if (significant > 15 && !point && (i == end || (text[i] != u'e' && text[i] != u'E')))
        return false;
    if (i < end && (text[i] == u'e' || text[i] == u'E')) {
        buf[n++] = 'e';
        ++i;
        if (i < end && (text[i] == u'+' || text[i] == u'-'))
            buf[n++] = char(text[i++].unicode());
        int expDigits = 0;
        for (; i < end && text[i] >= u'0' && text[i] <= u'9'; ++i, ++expDigits)
            buf[n++] = char(text[i].unicode());
        if (expDigits == 0)
            return false;
    }
    if (i != end)
        return false;
    const auto result = std::from_chars(buf, buf + n, value);
    if (result.ec != std::errc() || result.ptr != buf + n || !std::isfinite(value))
        return false;
    if (significant > 15 && value != 0) {
        // Excel keeps 15 significant digits of what was typed.
        char rounded[32];
        std::snprintf(rounded, sizeof rounded, "%.14e", value);
        value = std::strtod(rounded, nullptr);
    }
    if (value == 0)
        value = 0; // no negative zero
    return true;
}

int readInt(const QString &text, qsizetype &i, int minDigits, int maxDigits)
{
    int value = 0, count = 0;
    while (i < text.size() && count < maxDigits && text[i] >= u'0' && text[i] <= u'9') {
        value = value * 10 + (text[i].unicode() - u'0');
        ++i;
        ++count;
    }
    return count >= minDigits ? value : -1;
}

QDate firstDay(CellInput::DateSystem dates)
{
    return dates == CellInput::DateSystem::From1904 ? QDate(1904, 1, 1) : QDate(1900, 1, 1);
}

double serialOf(const QDate &date, CellInput::DateSystem dates)
{
    if (dates == CellInput::DateSystem::From1904)
        return double(QDate(1904, 1, 1).daysTo(date));
    // Serial numbers count Excel's phantom 1900-02-29.
    const double serial = double(QDate(1899, 12, 30).daysTo(date));
    return date < QDate(1900, 3, 1) ? serial - 1 : serial;
}

// yyyy-m-d or yyyy/m/d, optionally followed by h:mm or h:mm:ss.
bool parseDate(const QString &text, CellInput::DateSystem dates, double &serial, bool &hasTime)
{
    qsizetype i = 0;
    const int year = readInt(text, i, 4, 4);
    if (year < 1900 || i >= text.size())
        return false;
    const QChar sep = text[i];
    if (sep != u'-' && sep != u'/')
        return false;
    ++i;
    const int month = readInt(text, i, 1, 2);
    if (month < 0 || i >= text.size() || text[i] != sep)
        return false;
    ++i;
    const int day = readInt(text, i, 1, 2);
    const QDate date(year, month, day);
    if (day < 0 || !date.isValid() || date < firstDay(dates))
        return false;
    serial = serialOf(date, dates);
    hasTime = false;
    if (i == text.size())
        return true;
    if (text[i] != u' ')
        return false;
    while (i < text.size() && text[i] == u' ')
        ++i;
    const int hour = readInt(text, i, 1, 2);
    if (hour < 0 || hour > 23 || i >= text.size() || text[i] != u':')
        return false;
    ++i;
    const int minute = readInt(text, i, 2, 2);
    if (minute < 0 || minute > 59)
        return false;
    int second = 0;
    if (i < text.size() && text[i] == u':') {
        ++i;
        second = readInt(text, i, 2, 2);
        if (second < 0 || second > 59)
            return false;
    }
    if (i != text.size())
        return false;
    serial += (hour * 3600 + minute * 60 + second) / 86400.0;
    hasTime = true;
    return true;
}

} // namespace

CellInput CellInput::interpret(const QString &text, DateSystem dates)
{
    CellInput input;
    if (text.isEmpty())
        return input;
    if (text.startsWith(u'\'')) {
        input.text = text.mid(1);
        input.kind = input.text.isEmpty() ? Kind::Empty : Kind::QuotedText;
        return input;
    }
    const QChar first = text[0];
    if ((first >= u'0' && first <= u'9') || first == u'-' || first == u'+' || first == u'.' ||
        first == u' ') {
        if (parseNumber(text, input.number)) {
            input.kind = Kind::Number;
            return input;
        }
        bool hasTime = false;
        if (first != u' ' && parseDate(text, dates, input.number, hasTime)) {
            input.kind = hasTime ? Kind::DateTime : Kind::Date;
            return input;
        }
    }
    input.kind = Kind::Text;
    input.text = text;
    return input;
}

QString CellInput::displayText(Kind kind, double number, DateSystem dates)
{
    if (kind == Kind::Number)
        return QString::number(number, 'g', 15);
    if (kind != Kind::Date && kind != Kind::DateTime)
        return {};
    const double day = std::floor(number);
    QDate date = dates == DateSystem::From1904 ? QDate(1904, 1, 1).addDays(qint64(day))
                                               : QDate(1899, 12, 30).addDays(qint64(day));
    if (dates == DateSystem::From1900 && day < 60)
        date = date.addDays(1);
    if (kind == Kind::Date)
        return date.toString(QStringLiteral("yyyy-MM-dd"));
    const int seconds = int(std::lround((number - day) * 86400));
    return date.toString(QStringLiteral("yyyy-MM-dd ")) +
           QTime(0, 0).addSecs(seconds).toString(QStringLiteral("HH:mm:ss"));
}

} // namespace quorvale::xlsx
