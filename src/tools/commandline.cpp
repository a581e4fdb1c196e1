#include "tools/commandline.h"

#include "batch/usageerror.h"

namespace quorvale {

CommandLine::CommandLine(const QStringList &arguments, const QStringList &flags,
                         const QStringList &valued)
{
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (!argument.startsWith(QLatin1String("--"))) {
            m_positional << argument;
            continue;
        }
        QString name = argument.mid(2);
        QString value;
        bool inlineValue = false;
        if (const qsizetype eq = name.indexOf(QLatin1Char('=')); eq >= 0) {
            value = name.mid(eq + 1);
            name.truncate(eq);
            inlineValue = true;
        }
        if (m_values.contains(name))
            throw UsageError(QStringLiteral("--%1 given twice").arg(name));
        if (flags.contains(name)) {
            if (inlineValue)
                throw UsageError(QStringLiteral("--%1 takes no value").arg(name));
            m_values.insert(name, QString());
        } else if (valued.contains(name)) {
            if (!inlineValue) {
                if (i + 1 >= arguments.size())
                    throw UsageError(QStringLiteral("--%1 needs a value").arg(name));
                value = arguments.at(++i);
            }
            m_values.insert(name, value);
        } else {
            throw UsageError(QStringLiteral("unknown option %1").arg(argument));
        }
    }
}

QString CommandLine::onlyPositional(const QString &what) const
{
    if (m_positional.isEmpty())
        throw UsageError(QStringLiteral("missing %1").arg(what));
    if (m_positional.size() > 1)
        throw UsageError(QStringLiteral("unexpected argument %1").arg(m_positional.at(1)));
    if (m_positional.first().isEmpty())
        throw UsageError(QStringLiteral("%1 is empty").arg(what));
    return m_positional.first();
}

void CommandLine::require(const QStringList &names) const
{
    for (const QString &name : names)
        if (!isSet(name))
            throw UsageError(QStringLiteral("missing --%1").arg(name));
}

} // namespace quorvale
