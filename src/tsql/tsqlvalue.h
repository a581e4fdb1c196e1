#pragma once

#include <QString>
#include <QVariant>

namespace quorvale {

// A column's declared SQL Server type ("nvarchar(50)", "decimal(18, 2)",
// "money", "datetime"), read for turning values into the form the embedded
// engine stores: text as it stands, whole numbers, bits as 0/1, exact
// decimals as numbers, datetimes as 'YYYY-MM-DD HH:MM:SS'.
struct TsqlType {
    enum class Family { Text, Integer, Bit, Decimal, Float, DateTime, Other };

    QString declared;
    Family family = Family::Other;
    int length = 0;     // Text: characters allowed, 0 when unbounded
    bool fixed = false; // char / nchar: padded with blanks to the length
    int precision = 0;  // Decimal: digits in all
    int scale = 0;      // Decimal: digits after the point
    qint64 minimum = 0; // Integer range
    qint64 maximum = 0;

    static TsqlType parse(const QString &declared);
};

// The stored form of a value given as text (a field of a CSV file). Throws
// TsqlError whose message says why the text does not fit the type.
QVariant tsqlStoredFromText(const TsqlType &type, const QString &text);

// The stored form of a value as a server's driver hands it over (decimals as
// exact text, datetimes as QDateTime, bits as bool, number or text). Text
// keeps every character, trailing blanks included; datetimes keep whole
// seconds. A null QVariant stays NULL. Throws TsqlError like the above.
QVariant tsqlStoredFromValue(const TsqlType &type, const QVariant &value);

} // namespace quorvale
