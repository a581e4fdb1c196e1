#include "batch/outputpattern.h"

#include "batch/usageerror.h"

#include <QRegularExpression>

namespace quorvale {

namespace {

QString safe(QString value)
{
    for (QChar &c : value)
        if (c == u'/' || c == u'\\' || c.unicode() < 0x20 || c.unicode() == 0x7f)
            c = u'_';
    return value;
}

} // namespace

QString expandPattern(const QString &pattern, const PatternValues &values)
{
    static const QRegularExpression placeholder(QStringLiteral("\\{([^{}]*)\\}"));
    QString out;
    qsizetype copied = 0;
    for (auto it = placeholder.globalMatch(pattern); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const QString name = m.captured(1);
        QString value;
        if (name == QLatin1String("office"))
            value = values.office;
        else if (name == QLatin1String("office_name"))
            value = values.officeName;
        else if (name == QLatin1String("report"))
            value = values.report;
        else if (name == QLatin1String("month"))
            value = values.month;
        else if (name == QLatin1String("date"))
            value = values.date;
        else
            throw UsageError(QStringLiteral("unknown placeholder {%1} in '%2' (use {office}, "
                                            "{office_name}, {report}, {month}, {date})")
                                 .arg(name, pattern));
        out += pattern.mid(copied, m.capturedStart() - copied) + safe(value);
        copied = m.capturedEnd();
    }
    return out + pattern.mid(copied);
}

bool isPattern(const QString &name)
{
    static const QRegularExpression placeholder(QStringLiteral("\\{[^{}]*\\}"));
    return placeholder.match(name).hasMatch();
}

} // namespace quorvale
