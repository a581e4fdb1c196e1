#include "db/field.h"

#include <QDateTime>
#include <QLocale>
#include <cmath>

namespace quorvale {

namespace {

QString numberText(double d)
{
    if (!std::isfinite(d))
        return QString::number(d);
    if (d == 0)
        return QStringLiteral("0");
    return QString::number(d, 'f', QLocale::FloatingPointShortest);
}

// Drivers hand exact decimals (money, decimal(p,s)) over as text such as
// "85.5000"; trimming the text keeps digits a double would lose.
QString decimalText(const QString &s)
{
    QString t = s.trimmed();
    int i = 0;
    if (t.startsWith(QLatin1Char('-')) || t.startsWith(QLatin1Char('+')))
        ++i;
    const int digitsStart = i;
    while (i < t.size() && t.at(i).isDigit())
        ++i;
    int dot = -1;
    if (i < t.size() && t.at(i) == QLatin1Char('.')) {
        dot = i++;
        while (i < t.size() && t.at(i).isDigit())
            ++i;
    }
    if (i != t.size() || (i == digitsStart) || (dot == digitsStart && i == dot + 1)) {
        bool ok = false;
        const double d = t.toDouble(&ok);
        return ok ? numberText(d) : s;
    }
    if (t.startsWith(QLatin1Char('+')))
        t.remove(0, 1);
    if (dot >= 0) {
        while (t.endsWith(QLatin1Char('0')))
            t.chop(1);
        if (t.endsWith(QLatin1Char('.')))
            t.chop(1);
    }
    // Leading zeros ("007", "-0.5" -> keep the single zero before the point).
    const bool negative = t.startsWith(QLatin1Char('-'));
    QString body = negative ? t.mid(1) : t;
    while (body.size() > 1 && body.at(0) == QLatin1Char('0') && body.at(1) != QLatin1Char('.'))
        body.remove(0, 1);
    if (body.startsWith(QLatin1Char('.')))
        body.prepend(QLatin1Char('0'));
    if (body == QLatin1String("0"))
        return body;
    return negative ? QLatin1Char('-') + body : body;
}

QString dateTimeText(const QDateTime &dt)
{
    if (dt.time() == QTime(0, 0))
        return dt.toString(QStringLiteral("yyyy-MM-dd"));
    return dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// The embedded engine's stored form 'YYYY-MM-DD HH:MM:SS', without parsing.
bool isStoredForm(const QString &s)
{
    static const char pattern[] = "dddd-dd-dd dd:dd:dd";
    if (s.size() != 19)
        return false;
    for (int i = 0; i < 19; ++i) {
        const QChar c = s.at(i);
        if (pattern[i] == 'd' ? !(c >= QLatin1Char('0') && c <= QLatin1Char('9'))
                              : c != QLatin1Char(pattern[i]))
            return false;
    }
    return true;
}

QDateTime parseStoredDateTime(const QString &s)
{
    const QString t = s.trimmed();
    for (const char *format : {"yyyy-MM-dd HH:mm:ss", "yyyy-MM-dd HH:mm:ss.zzz", "yyyy-MM-dd",
                               "yyyy-MM-ddTHH:mm:ss", "yyyy-MM-dd HH:mm"}) {
        const QDateTime dt = QDateTime::fromString(t, QLatin1String(format));
        if (dt.isValid())
            return dt;
    }
    return {};
}

} // namespace

FieldKind fieldKindOfMetaType(int typeId)
{
    switch (typeId) {
    case QMetaType::QDateTime:
    case QMetaType::QDate:
    case QMetaType::QTime:
        return FieldKind::DateTime;
    case QMetaType::Bool:
        return FieldKind::Bit;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Char:
    case QMetaType::UChar:
    case QMetaType::SChar:
        return FieldKind::Number;
    default:
        return FieldKind::Text;
    }
}

QString Field::text() const
{
    if (m_value.isNull())
        return QString(QLatin1String(""));
    const int type = m_value.typeId();
    switch (m_kind) {
    case FieldKind::Number:
    case FieldKind::Bit:
        switch (type) {
        case QMetaType::Bool:
            return m_value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
        case QMetaType::Double:
        case QMetaType::Float:
            return numberText(m_value.toDouble());
        case QMetaType::QString:
            return decimalText(m_value.toString());
        default:
            return m_value.toString();
        }
    case FieldKind::DateTime:
        if (type == QMetaType::QDateTime)
            return dateTimeText(m_value.toDateTime());
        if (type == QMetaType::QDate)
            return m_value.toDate().toString(QStringLiteral("yyyy-MM-dd"));
        if (type == QMetaType::QString) {
            const QString stored = m_value.toString();
            if (isStoredForm(stored))
                return stored.endsWith(QLatin1String(" 00:00:00")) ? stored.left(10) : stored;
            const QDateTime dt = parseStoredDateTime(m_value.toString());
            return dt.isValid() ? dateTimeText(dt) : m_value.toString();
        }
        return m_value.toString();
    case FieldKind::Text:
        break;
    }
    if (type == QMetaType::Double || type == QMetaType::Float)
        return numberText(m_value.toDouble());
    if (type == QMetaType::QDateTime)
        return dateTimeText(m_value.toDateTime());
    if (type == QMetaType::Bool)
        return m_value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    return m_value.toString();
}

bool Field::toBool() const
{
    if (m_value.isNull())
        return false;
    switch (m_value.typeId()) {
    case QMetaType::Bool:
        return m_value.toBool();
    case QMetaType::QString: {
        const QString t = m_value.toString().trimmed();
        if (t.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
            return true;
        bool ok = false;
        const double d = t.toDouble(&ok);
        return ok && d != 0;
    }
    default:
        return m_value.toDouble() != 0;
    }
}

} // namespace quorvale
