#include "tsql/sqlliteral.h"

namespace quorvale {

QString sqlQuoted(const QString &value)
{
    QString quoted = value;
    return quoted.replace(QLatin1Char('\''), QLatin1String("''"));
}

} // namespace quorvale
