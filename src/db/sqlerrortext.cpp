#include "db/sqlerrortext.h"

#include <QSqlError>

namespace quorvale {

QString sqlErrorText(const QSqlError &error)
{
    if (!error.databaseText().isEmpty())
        return error.databaseText();
    if (!error.driverText().isEmpty())
        return error.driverText();
    return error.text();
}

} // namespace quorvale
