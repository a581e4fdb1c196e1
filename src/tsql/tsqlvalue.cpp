#include "tsql/tsqlvalue.h"

#include "tsql/tsqldatetime.h"
#include "tsql/tsqlerror.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <charconv>
#include <limits>

namespace quorvale {

namespace {

// A double keeps every decimal of up to 15 significant digits exactly: the
// shortest text of the stored number is the text it came from.
constexpr int exactDigits = 15;

[[noreturn]] void refuse(const QString &reason)
{
    throw TsqlError(reason);
}

QString quoted(const QString &text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QVariant storedInteger(const TsqlType &type, const QString &text)
{
    static const QRegularExpression whole(QStringLiteral("^[+-]?\\d+$"));
    const QString t = text.trimmed();
    if (!whole.match(t).hasMatch())
        refuse(QStringLiteral("%1 is not a whole number").arg(quoted(text)));
    bool ok = false;
    const qint64 value = t.toLongLong(&ok);
    if (!ok || value < type.minimum || value > type.maximum)
        refuse(QStringLiteral("%1 is out of range for %2").arg(quoted(text), type.declared));
    return value;
}

QVariant storedBit(const QString &text)
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("1") || t == QLatin1String("true") || t == QLatin1String("t"))
        return 1;
    if (t == QLatin1String("0") || t == QLatin1String("false") || t == QLatin1String("f"))
        return 0;
    refuse(QStringLiteral("%1 is not a bit (0 or 1)").arg(quoted(text)));
}

// Exact decimal text to a stored number, never through a double on the way
// except for the one conversion that stores it.
QVariant storedDecimal(const TsqlType &type, const QString &text)
{
    static const QRegularExpression decimal(QStringLiteral("^([+-]?)(\\d*)(?:\\.(\\d*))?$"));
    const QString t = text.trimmed();
    const auto m = decimal.match(t);
    if (!m.hasMatch() || (m.captured(2).isEmpty() && m.captured(3).isEmpty()))
        refuse(QStringLiteral("%1 is not a number").arg(quoted(text)));
    QString whole = m.captured(2);
    QString fraction = m.captured(3);
    while (fraction.endsWith(QLatin1Char('0')))
        fraction.chop(1);
    while (whole.startsWith(QLatin1Char('0')))
        whole.remove(0, 1);
    if (fraction.size() > type.scale)
        refuse(QStringLiteral("%1 has more than %2 decimal places for %3")
                   .arg(quoted(text))
                   .arg(type.scale)
                   .arg(type.declared));
    if (whole.size() > type.precision - type.scale)
        refuse(QStringLiteral("%1 is out of range for %2").arg(quoted(text), type.declared));
    const bool negative = m.captured(1) == QLatin1String("-");
    if (fraction.isEmpty() && whole.size() <= 18)
        return (negative ? -1 : 1) * whole.toLongLong();
    QString digits = whole + fraction;
    while (digits.startsWith(QLatin1Char('0')))
        digits.remove(0, 1);
    if (digits.size() > exactDigits)
        refuse(QStringLiteral("%1 has more significant digits than the embedded database keeps "
                              "exactly (%2)")
                   .arg(quoted(text))
                   .arg(exactDigits));
    const QByteArray latin =
        (QLatin1String(negative ? "-" : "") + (whole.isEmpty() ? QStringLiteral("0") : whole) +
         QLatin1Char('.') + fraction)
            .toLatin1();
    double value = 0;
    std::from_chars(latin.constData(), latin.constData() + latin.size(), value);
    return value;
}

QVariant storedFloat(const QString &text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok)
        refuse(QStringLiteral("%1 is not a number").arg(quoted(text)));
    return value;
}

QVariant storedText(const TsqlType &type, const QString &text)
{
    if (type.length > 0 && text.size() > type.length)
        refuse(QStringLiteral("%1 is longer than the %2 characters of %3")
                   .arg(quoted(text))
                   .arg(type.length)
                   .arg(type.declared));
    if (type.fixed && text.size() < type.length)
        return text + QString(type.length - text.size(), QLatin1Char(' '));
    return text;
}

QVariant storedDateTime(const QString &text)
{
    try {
        return tsqlDateTimeFromString(text);
    } catch (const TsqlError &) {
        refuse(QStringLiteral("%1 is not a date and time").arg(quoted(text)));
    }
}

QString storedForm(const QDateTime &value)
{
    return value.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

} // namespace

TsqlType TsqlType::parse(const QString &declared)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*([A-Za-z]+)\\s*(?:\\(\\s*(\\w+)\\s*(?:,\\s*(\\d+)\\s*)?\\))?\\s*$"));
    TsqlType type;
    type.declared = declared.simplified();
    const auto m = form.match(declared);
    if (!m.hasMatch())
        return type;
    const QString base = m.captured(1).toLower();
    const QString first = m.captured(2);
    const auto integer = [&](qint64 minimum, qint64 maximum) {
        type.family = Family::Integer;
        type.minimum = minimum;
        type.maximum = maximum;
    };
    if (base == QLatin1String("char") || base == QLatin1String("nchar") ||
        base == QLatin1String("varchar") || base == QLatin1String("nvarchar")) {
        type.family = Family::Text;
        type.fixed = base.endsWith(QLatin1String("char")) && !base.contains(QLatin1String("var"));
        // char without a length holds one character; (max) is unbounded.
        type.length = first.isEmpty() ? 1 : first.toInt();
    } else if (base == QLatin1String("text") || base == QLatin1String("ntext")) {
        type.family = Family::Text;
    } else if (base == QLatin1String("int") || base == QLatin1String("integer")) {
        integer(std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    } else if (base == QLatin1String("smallint")) {
        integer(std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
    } else if (base == QLatin1String("tinyint")) {
        integer(0, 255);
    } else if (base == QLatin1String("bigint")) {
        integer(std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max());
    } else if (base == QLatin1String("bit")) {
        type.family = Family::Bit;
    } else if (base == QLatin1String("decimal") || base == QLatin1String("numeric")) {
        type.family = Family::Decimal;
        type.precision = first.isEmpty() ? 18 : first.toInt();
        type.scale = m.captured(3).toInt();
    } else if (base == QLatin1String("money")) {
        type.family = Family::Decimal;
        type.precision = 19;
        type.scale = 4;
    } else if (base == QLatin1String("smallmoney")) {
        type.family = Family::Decimal;
        type.precision = 10;
        type.scale = 4;
    } else if (base == QLatin1String("float") || base == QLatin1String("real")) {
        type.family = Family::Float;
    } else if (base == QLatin1String("datetime") || base == QLatin1String("smalldatetime") ||
               base == QLatin1String("date") || base == QLatin1String("datetime2")) {
        type.family = Family::DateTime;
    }
    return type;
}

QVariant tsqlStoredFromText(const TsqlType &type, const QString &text)
{
    switch (type.family) {
    case TsqlType::Family::Text:
        return storedText(type, text);
    case TsqlType::Family::Integer:
        return storedInteger(type, text);
    case TsqlType::Family::Bit:
        return storedBit(text);
    case TsqlType::Family::Decimal:
        return storedDecimal(type, text);
    case TsqlType::Family::Float:
        return storedFloat(text);
    case TsqlType::Family::DateTime:
        return storedDateTime(text);
    case TsqlType::Family::Other:
        break;
    }
    return text;
}

QVariant tsqlStoredFromValue(const TsqlType &type, const QVariant &value)
{
    if (value.isNull())
        return {};
    const int id = value.typeId();
    switch (type.family) {
    case TsqlType::Family::Text:
    case TsqlType::Family::Other:
        return value.toString();
    case TsqlType::Family::DateTime:
        if (id == QMetaType::QDateTime)
            return storedForm(value.toDateTime());
        if (id == QMetaType::QDate)
            return storedForm(value.toDate().startOfDay());
        break;
    case TsqlType::Family::Bit:
        if (id == QMetaType::Bool)
            return value.toBool() ? 1 : 0;
        break;
    case TsqlType::Family::Decimal:
    case TsqlType::Family::Float:
        // A driver that hands over a binary number has already rounded it.
        if (id == QMetaType::Double || id == QMetaType::Float)
            return value.toDouble();
        break;
    case TsqlType::Family::Integer:
        break;
    }
    switch (id) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return tsqlStoredFromText(type, QString::number(value.toLongLong()));
    case QMetaType::Double:
    case QMetaType::Float:
        return tsqlStoredFromText(
            type, QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest));
    default:
        return tsqlStoredFromText(type, value.toString());
    }
}

} // namespace quorvale
